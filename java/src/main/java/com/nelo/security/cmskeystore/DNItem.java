package com.nelo.security.cmskeystore;

import com.nelo.zel.vosmar.item.AbstractDNItem;
import javax.security.auth.x500.X500Principal;

/** A distinguished name (X.501) of a certificate. Built by the native library only. */
@SuppressWarnings("exports")
public final class DNItem extends AbstractDNItem {
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

  /** The name in the text form of RFC&nbsp;2253, with all its attributes. */
  @Override
  public String toString() {
    byte[] der = der();
    return der.length == 0 ? "" : new X500Principal(der).getName();
  }
}
