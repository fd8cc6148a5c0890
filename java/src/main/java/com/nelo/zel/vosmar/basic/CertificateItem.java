package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractCertificateItem;

/** An X.509 certificate as a key database holds it, or made from its bytes alone. */
@SuppressWarnings("exports")
public final class CertificateItem extends AbstractCertificateItem<DNItem, BERObject> {
  private CertificateItem(
      short version,
      short keySize,
      String label,
      DNItem subject,
      DNItem issuer,
      long effectTime,
      long expireTime,
      BERObject subjectPublicKeyInfo,
      BERObject alwaysNull,
      byte[] signature,
      BERObject signatureAlgorithm,
      String signatureAlgorithmOid,
      String signatureAlgorithmName,
      byte[] tbsCertificate,
      byte[] der) {
    super(
        version,
        keySize,
        label,
        subject,
        issuer,
        effectTime,
        expireTime,
        subjectPublicKeyInfo,
        signature,
        signatureAlgorithm,
        signatureAlgorithmOid,
        signatureAlgorithmName,
        tbsCertificate,
        der);
  }

  /**
   * Makes an item that carries only its bytes.
   *
   * @param der a DER certificate
   */
  public CertificateItem(byte[] der) {
    super(der);
  }
}
