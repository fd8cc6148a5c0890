package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractKeyItem;

/**
 * One entry of a key database: a key with its certificate and chain, a certificate alone, or a
 * pending request with its key. Built by the native library only.
 */
@SuppressWarnings("exports")
public final class KeyItem
    extends AbstractKeyItem<EncryptedPrivateKeyInfoItem, CertificateItem, BERObject> {
  private final KeyAlgorithm algorithm;
  private final CertificateRequestItem request;

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
    this.algorithm = KeyAlgorithm.of(algorithm);
    this.request = null;
  }

  private KeyItem(
      String label,
      short algorithm,
      short keySize,
      EncryptedPrivateKeyInfoItem privateKey,
      CertificateRequestItem request,
      BERObject subjectPublicKeyInfo) {
    super(label, keySize, privateKey, null, subjectPublicKeyInfo, false, false);
    this.algorithm = KeyAlgorithm.of(algorithm);
    this.request = request;
  }

  /**
   * The kind of key.
   *
   * @return the algorithm
   */
  public KeyAlgorithm algorithm() {
    return algorithm;
  }

  /**
   * The pending request.
   *
   * @return the request, or null when the entry is no request
   */
  public CertificateRequestItem request() {
    return request;
  }
}
