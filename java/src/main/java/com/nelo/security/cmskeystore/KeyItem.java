package com.nelo.security.cmskeystore;

import com.nelo.zel.vosmar.item.AbstractKeyItem;

/**
 * One entry of a key database: a key with its certificate and chain, or a certificate alone. Built
 * by the native library only.
 */
@SuppressWarnings("exports")
public final class KeyItem
    extends AbstractKeyItem<EncryptedPrivateKeyInfoItem, CertificateItem, BERObject> {
  private final int algorithm;

  private KeyItem(
      String label,
      short algorithm,
      short keySize,
      EncryptedPrivateKeyInfoItem privateKey,
      CertificateItem[] certificates,
      BERObject subjectPublicKeyInfo,
      boolean trusted,
      boolean defaultKey) {
    super(label, keySize, privateKey, certificates, subjectPublicKeyInfo, trusted, defaultKey);
    this.algorithm = algorithm;
  }

  /**
   * The kind of key.
   *
   * @return 1 for RSA, 2 for EC, 3 for Ed25519
   */
  public int algorithm() {
    return algorithm;
  }
}
