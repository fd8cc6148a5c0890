package com.nelo.zel.vosmar.item;

import java.util.ArrayList;
import java.util.List;

/**
 * A distinguished name (X.501): up to seven attributes, each at most once, and what further ones
 * the native library read from a certificate.
 */
public abstract class AbstractDNItem {
  // The native library reads these seven fields by name.
  private final String cn;
  private final String ou;
  private final String o;
  private final String l;
  private final String s;
  private final String pc;
  private final String c;
  private final byte[] der;
  private final List<String> optionalFields = new ArrayList<>();

  /**
   * Makes a name; attributes that it does not have are null.
   *
   * @param cn the common name
   * @param ou the organisational unit
   * @param o the organisation
   * @param l the locality
   * @param s the state or province
   * @param pc the postal code
   * @param c the country
   * @param der the DER Name, or no bytes
   */
  protected AbstractDNItem(
      String cn, String ou, String o, String l, String s, String pc, String c, byte[] der) {
    this.cn = cn;
    this.ou = ou;
    this.o = o;
    this.l = l;
    this.s = s;
    this.pc = pc;
    this.c = c;
    this.der = der;
  }

  /**
   * Called by the native library right after the constructor, once for each further attribute.
   *
   * @param field the text of the attribute
   */
  protected final void addOptionalField(String field) {
    optionalFields.add(field);
  }

  /**
   * The common name.
   *
   * @return its text, or null
   */
  public String commonName() {
    return cn;
  }

  /**
   * The organisational unit.
   *
   * @return its text, or null
   */
  public String organisationalUnit() {
    return ou;
  }

  /**
   * The organisation.
   *
   * @return its text, or null
   */
  public String organisation() {
    return o;
  }

  /**
   * The locality.
   *
   * @return its text, or null
   */
  public String locality() {
    return l;
  }

  /**
   * The state or province.
   *
   * @return its text, or null
   */
  public String state() {
    return s;
  }

  /**
   * The postal code.
   *
   * @return its text, or null
   */
  public String postalCode() {
    return pc;
  }

  /**
   * The country.
   *
   * @return a two-letter code of ISO&nbsp;3166, or null
   */
  public String country() {
    return c;
  }

  /**
   * Further attributes that the native library found.
   *
   * @return their texts; empty for a name made in Java
   */
  public List<String> optionalFields() {
    return List.copyOf(optionalFields);
  }

  /**
   * The encoding of a name that the native library read.
   *
   * @return a copy of the DER Name; empty for a name made in Java
   */
  public byte[] der() {
    return der.clone();
  }
}
