package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractPrivateKeyInfoItem;

/** A private key in the clear, to be closed after use. */
@SuppressWarnings("exports")
public final class PrivateKeyInfoItem extends AbstractPrivateKeyInfoItem {
  /**
   * Makes an item that takes the bytes over.
   *
   * @param der a DER PrivateKeyInfo; wiped when the item is destroyed
   */
  public PrivateKeyInfoItem(byte[] der) {
    super(der);
  }
}
