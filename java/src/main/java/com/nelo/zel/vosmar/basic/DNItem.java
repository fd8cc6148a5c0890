package com.nelo.zel.vosmar.basic;

import java.util.ArrayList;
import java.util.List;

/** A distinguished name. */
public final class DNItem {
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
}
