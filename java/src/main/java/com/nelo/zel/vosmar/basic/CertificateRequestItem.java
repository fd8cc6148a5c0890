package com.nelo.zel.vosmar.basic;

/** A certificate request (PKCS&nbsp;#10, RFC&nbsp;2986). Built by the native library only. */
public final class CertificateRequestItem {
  private final int keySize;
  private final DNItem subject;
  private final BERObject subjectPublicKeyInfo;
  private final BERObject attributes;
  private final byte[] signature;
  private final BERObject signatureAlgorithm;
  private final String signatureAlgorithmOid;
  private final String signatureAlgorithmName;
  private final byte[] der;
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
    this.keySize = keySize;
    this.subject = subject;
    this.subjectPublicKeyInfo = subjectPublicKeyInfo;
    this.attributes = attributes;
    this.signature = signature;
    this.signatureAlgorithm = signatureAlgorithm;
    this.signatureAlgorithmOid = signatureAlgorithmOid;
    this.signatureAlgorithmName = signatureAlgorithmName;
    this.der = der;
    this.requestInfoDer = requestInfoDer;
  }

  /**
   * The size of the requested key.
   *
   * @return bits
   */
  public int keySize() {
    return keySize;
  }

  /**
   * Whom the certificate shall name.
   *
   * @return the subject
   */
  public DNItem subject() {
    return subject;
  }

  /**
   * The public key.
   *
   * @return a SubjectPublicKeyInfo
   */
  public BERObject subjectPublicKeyInfo() {
    return subjectPublicKeyInfo;
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
   * The requester's signature.
   *
   * @return a copy of its bytes
   */
  public byte[] signature() {
    return signature.clone();
  }

  /**
   * How the request is signed.
   *
   * @return an AlgorithmIdentifier
   */
  public BERObject signatureAlgorithm() {
    return signatureAlgorithm;
  }

  /**
   * How the request is signed, as an object identifier.
   *
   * @return dotted numbers
   */
  public String signatureAlgorithmOid() {
    return signatureAlgorithmOid;
  }

  /**
   * How the request is signed, as a name.
   *
   * @return the algorithm's short name
   */
  public String signatureAlgorithmName() {
    return signatureAlgorithmName;
  }

  /**
   * The whole request.
   *
   * @return a copy of its DER bytes
   */
  public byte[] der() {
    return der.clone();
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
    return "CertificateRequestItem[" + subject + "]";
  }
}
