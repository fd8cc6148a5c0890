package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractEncryptedPrivateKeyInfoItem;

/** A private key encrypted under a password. */
@SuppressWarnings("exports")
public final class EncryptedPrivateKeyInfoItem extends AbstractEncryptedPrivateKeyInfoItem {
  /**
   * Makes an item over a copy of the bytes.
   *
   * @param der a DER EncryptedPrivateKeyInfo
   */
  public EncryptedPrivateKeyInfoItem(byte[] der) {
    super(der);
  }
}
