package com.nelo.zel.vosmar.item;

/**
 * A private key encrypted under a password: the EncryptedPrivateKeyInfo of PKCS&nbsp;#8
 * (RFC&nbsp;5958, section 3).
 *
 * <p>{@link javax.crypto.EncryptedPrivateKeyInfo} reads {@link #der()} as it stands.
 */
public abstract class AbstractEncryptedPrivateKeyInfoItem {
  private final byte[] der;

  /**
   * Makes an item over a copy of the bytes.
   *
   * @param der a DER EncryptedPrivateKeyInfo
   */
  protected AbstractEncryptedPrivateKeyInfoItem(byte[] der) {
    this.der = der.clone();
  }

  /**
   * The encoding.
   *
   * @return a copy, the caller's own
   */
  public byte[] der() {
    return der.clone();
  }

  @Override
  public String toString() {
    return "EncryptedPrivateKeyInfoItem[" + der.length + " bytes]";
  }
}
