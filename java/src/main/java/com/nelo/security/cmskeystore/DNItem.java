package com.nelo.security.cmskeystore;

import java.util.ArrayList;
import java.util.List;
import javax.security.auth.x500.X500Principal;

/** A distinguished name (X.501) of a certificate. Built by the native library only. */
public final class DNItem {
  private final String cn;
  private final String ou;
  private final String o;
  private final String l;
  private final String s;
  private final String pc;
  private final String c;
  private final byte[] der;
  private final List<String> optionalFields = new ArrayList<>();

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
    this.cn = cn;
    this.ou = ou;
    this.o = o;
    this.l = l;
    this.s = s;
    this.pc = pc;
    this.c = c;
    this.der = der;
  }

  /** Called by the native library right after the constructor, once for each further attribute. */
  private void addOptionalField(String field) {
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
   * Further attributes.
   *
   * @return their texts
   */
  public List<String> optionalFields() {
    return List.copyOf(optionalFields);
  }

  /**
   * The encoding.
   *
   * @return a copy of the DER Name
   */
  public byte[] der() {
    return der.clone();
  }

  /** The name in the text form of RFC&nbsp;2253, with all its attributes. */
  @Override
  public String toString() {
    return der.length == 0 ? "" : new X500Principal(der).getName();
  }
}
