package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractSignedItem;

/** A certificate request (PKCS&nbsp;#10, RFC&nbsp;2986). Built by the native library only. */
@SuppressWarnings("exports")
public final class CertificateRequestItem extends AbstractSignedItem<DNItem, BERObject> {
  private final BERObject attributes;
  private final byte[] requestInfoDer;

  private CertificateRequestItem(
      short keySize,
      DNItem subject,
      BERObject subjectPublicKeyInfo,
      BERObject attributes,
      byte[] signature,
      BERObject signatureAlgorithm,
      String signatureAlgorithmOid,
      String signatureAlgorithmName,
      byte[] der,
      byte[] requestInfoDer) {
    super(
        keySize,
        subject,
        subjectPublicKeyInfo,
        signature,
        signatureAlgorithm,
        signatureAlgorithmOid,
        signatureAlgorithmName,
        der);
    this.attributes = attributes;
    this.requestInfoDer = requestInfoDer;
  }

  /**
   * What the request asks for besides name and key.
   *
   * @return the PKCS&nbsp;#10 attributes, or null when there are none
   */
  public BERObject attributes() {
    return attributes;
  }

  /**
   * The part that is signed.
   *
   * @return a copy of the DER CertificationRequestInfo
   */
  public byte[] requestInfoDer() {
    return requestInfoDer.clone();
  }

  @Override
  public String toString() {
    return "CertificateRequestItem[" + subject() + "]";
  }
}
