package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractDNItem;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import javax.naming.InvalidNameException;
import javax.naming.ldap.LdapName;
import javax.naming.ldap.Rdn;
import javax.security.auth.x500.X500Principal;

/**
 * A distinguished name (X.501) of up to seven attributes, each at most once: common name,
 * organisational unit, organisation, locality, state, postal code and country.
 *
 * <pre>
 * DNItem.parse("CN=www.example.com,O=Example,C=DE")
 * DNItem.builder().commonName("www.example.com").organisation("Example").country("DE").build()
 * </pre>
 *
 * <p>A name that the native library read from a certificate may have further attributes: {@link
 * #optionalFields()}, and whole in {@link #der()}.
 */
@SuppressWarnings("exports")
public final class DNItem extends AbstractDNItem {
  /** Attributes that the Java platform would print as numbers, and their usual names. */
  private static final Map<String, String> ATTRIBUTE_NAMES =
      Map.of(
          "2.5.4.17", "postalCode",
          "2.5.4.5", "serialNumber",
          "2.5.4.4", "SN",
          "2.5.4.42", "GN",
          "2.5.4.12", "title",
          "1.2.840.113549.1.9.1", "emailAddress");

  private DNItem(
      String cn,
      String ou,
      String o,
      String l,
      String s,
      String pc,
      String c,
      String alwaysNull,
      byte[] der) {
    super(cn, ou, o, l, s, pc, c, der);
  }

  /**
   * Reads a name in the text form of RFC&nbsp;4514, such as {@code
   * CN=www.example.com,O=Example,C=DE}.
   *
   * @param text attributes CN, OU, O, L, ST (or S), postalCode (or PC) and C, in any order and case
   * @return the name
   * @throws IllegalArgumentException when the text is no such name, names an attribute twice, or
   *     one that is not among the seven
   */
  public static DNItem parse(String text) {
    Builder builder = builder();
    try {
      for (Rdn rdn : new LdapName(text).getRdns()) {
        if (rdn.size() != 1 || !(rdn.getValue() instanceof String value)) {
          throw new IllegalArgumentException("one text value is possible here: " + rdn);
        }
        builder.set(rdn.getType(), value);
      }
    } catch (InvalidNameException notAName) {
      throw new IllegalArgumentException("no distinguished name: " + text, notAName);
    }
    return builder.build();
  }

  /**
   * Begins a name.
   *
   * @return a builder without any attribute
   */
  public static Builder builder() {
    return new Builder();
  }

  /**
   * The name in the text form of RFC&nbsp;4514, with all its attributes; those of a name made in
   * Java in the order in which the native library encodes them.
   */
  @Override
  public String toString() {
    byte[] der = der();
    if (der.length > 0) {
      return new X500Principal(der).getName(X500Principal.RFC2253, ATTRIBUTE_NAMES);
    }
    List<String> parts = new ArrayList<>();
    addPart(parts, "CN", commonName());
    addPart(parts, "OU", organisationalUnit());
    addPart(parts, "O", organisation());
    addPart(parts, "postalCode", postalCode());
    addPart(parts, "L", locality());
    addPart(parts, "ST", state());
    addPart(parts, "C", country());
    return String.join(",", parts);
  }

  private static void addPart(List<String> parts, String type, String value) {
    if (value != null) {
      parts.add(type + "=" + Rdn.escapeValue(value));
    }
  }

  /** Collects the attributes of a name. */
  public static final class Builder {
    private String cn;
    private String ou;
    private String o;
    private String l;
    private String s;
    private String pc;
    private String c;

    private Builder() {}

    /**
     * Sets the common name.
     *
     * @param value its text
     * @return this builder
     */
    public Builder commonName(String value) {
      cn = once("CN", cn, value);
      return this;
    }

    /**
     * Sets the organisational unit.
     *
     * @param value its text
     * @return this builder
     */
    public Builder organisationalUnit(String value) {
      ou = once("OU", ou, value);
      return this;
    }

    /**
     * Sets the organisation.
     *
     * @param value its text
     * @return this builder
     */
    public Builder organisation(String value) {
      o = once("O", o, value);
      return this;
    }

    /**
     * Sets the locality.
     *
     * @param value its text
     * @return this builder
     */
    public Builder locality(String value) {
      l = once("L", l, value);
      return this;
    }

    /**
     * Sets the state or province.
     *
     * @param value its text
     * @return this builder
     */
    public Builder state(String value) {
      s = once("ST", s, value);
      return this;
    }

    /**
     * Sets the postal code.
     *
     * @param value its text
     * @return this builder
     */
    public Builder postalCode(String value) {
      pc = once("postalCode", pc, value);
      return this;
    }

    /**
     * Sets the country.
     *
     * @param value a two-letter code of ISO&nbsp;3166
     * @return this builder
     */
    public Builder country(String value) {
      if (value.length() != 2) {
        throw new IllegalArgumentException("a country is two letters: " + value);
      }
      c = once("C", c, value);
      return this;
    }

    /**
     * Makes the name.
     *
     * @return a name of the attributes set so far
     * @throws IllegalArgumentException when there are none
     */
    public DNItem build() {
      DNItem name = new DNItem(cn, ou, o, l, s, pc, c, null, new byte[0]);
      if (name.toString().isEmpty()) {
        throw new IllegalArgumentException("a distinguished name has one attribute at least");
      }
      return name;
    }

    private void set(String type, String value) {
      switch (type.toUpperCase(Locale.ROOT)) {
        case "CN", "2.5.4.3" -> commonName(value);
        case "OU", "2.5.4.11" -> organisationalUnit(value);
        case "O", "2.5.4.10" -> organisation(value);
        case "L", "2.5.4.7" -> locality(value);
        case "ST", "S", "2.5.4.8" -> state(value);
        case "POSTALCODE", "PC", "2.5.4.17" -> postalCode(value);
        case "C", "2.5.4.6" -> country(value);
        default ->
            throw new IllegalArgumentException(
                type + " is none of CN, OU, O, L, ST, postalCode and C");
      }
    }

    private static String once(String type, String former, String value) {
      if (former != null) {
        throw new IllegalArgumentException(type + " is given twice");
      }
      if (value.isEmpty()) {
        throw new IllegalArgumentException(type + " is empty");
      }
      return value;
    }
  }
}
