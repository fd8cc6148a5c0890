package com.nelo.security.cmskeystore;

import java.io.ByteArrayInputStream;
import java.security.cert.CertificateException;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.time.Instant;

/**
 * An X.509 certificate (RFC&nbsp;5280) as a key database holds it.
 *
 * <p>An item made from bytes alone knows nothing but {@link #der()} and what {@link #x509()} reads out
 * of them: its label and the other objects are null, its numbers 0.
 */
public final class CertificateItem {
  private final int version;
  private final int keySize;
  private final String label;
  private final DNItem subject;
  private final DNItem issuer;
  private final long effectTime;
  private final long expireTime;
  private final BERObject subjectPublicKeyInfo;
  private final byte[] signature;
  private final BERObject signatureAlgorithm;
  private final String signatureAlgorithmOid;
  private final String signatureAlgorithmName;
  private final byte[] tbsCertificate;
  private final byte[] der;

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
    this.version = version;
    this.keySize = keySize;
    this.label = label;
    this.subject = subject;
    this.issuer = issuer;
    this.effectTime = effectTime;
    this.expireTime = expireTime;
    this.subjectPublicKeyInfo = subjectPublicKeyInfo;
    this.signature = signature;
    this.signatureAlgorithm = signatureAlgorithm;
    this.signatureAlgorithmOid = signatureAlgorithmOid;
    this.signatureAlgorithmName = signatureAlgorithmName;
    this.tbsCertificate = tbsCertificate;
    this.der = der;
  }

  /**
   * Makes an item that carries only its bytes.
   *
   * @param der a DER certificate
   */
  public CertificateItem(byte[] der) {
    this.version = 0;
    this.keySize = 0;
    this.label = null;
    this.subject = null;
    this.issuer = null;
    this.effectTime = 0;
    this.expireTime = 0;
    this.subjectPublicKeyInfo = null;
    this.signature = null;
    this.signatureAlgorithm = null;
    this.signatureAlgorithmOid = null;
    this.signatureAlgorithmName = null;
    this.tbsCertificate = null;
    this.der = der.clone();
  }

  /**
   * The certificate as the Java platform knows it.
   *
   * @return the parsed certificate
   * @throws CertificateException when the bytes are no certificate
   */
  public X509Certificate x509() throws CertificateException {
    CertificateFactory factory = CertificateFactory.getInstance("X.509");
    return (X509Certificate) factory.generateCertificate(new ByteArrayInputStream(der));
  }

  /**
   * The X.509 version.
   *
   * @return 1 to 3
   */
  public int version() {
    return version;
  }

  /**
   * The size of the public key.
   *
   * @return bits
   */
  public int keySize() {
    return keySize;
  }

  /**
   * The name of the entry that the certificate belongs to.
   *
   * @return the label
   */
  public String label() {
    return label;
  }

  /**
   * Whom the certificate names.
   *
   * @return the subject
   */
  public DNItem subject() {
    return subject;
  }

  /**
   * Who signed it.
   *
   * @return the issuer
   */
  public DNItem issuer() {
    return issuer;
  }

  /**
   * The first moment at which the certificate is valid.
   *
   * @return a time in whole seconds
   */
  public Instant notBefore() {
    return Instant.ofEpochSecond(effectTime);
  }

  /**
   * The last moment at which the certificate is valid.
   *
   * @return a time in whole seconds
   */
  public Instant notAfter() {
    return Instant.ofEpochSecond(expireTime);
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
   * The issuer's signature.
   *
   * @return a copy of its bytes
   */
  public byte[] signature() {
    return signature == null ? null : signature.clone();
  }

  /**
   * How the certificate is signed.
   *
   * @return an AlgorithmIdentifier
   */
  public BERObject signatureAlgorithm() {
    return signatureAlgorithm;
  }

  /**
   * How the certificate is signed, as an object identifier.
   *
   * @return dotted numbers
   */
  public String signatureAlgorithmOid() {
    return signatureAlgorithmOid;
  }

  /**
   * How the certificate is signed, as a name.
   *
   * @return the algorithm's short name
   */
  public String signatureAlgorithmName() {
    return signatureAlgorithmName;
  }

  /**
   * The part that is signed.
   *
   * @return a copy of the DER TBSCertificate
   */
  public byte[] tbsCertificate() {
    return tbsCertificate == null ? null : tbsCertificate.clone();
  }

  /**
   * The whole certificate.
   *
   * @return a copy of its DER bytes
   */
  public byte[] der() {
    return der.clone();
  }

  @Override
  public String toString() {
    return "CertificateItem[" + (subject == null ? der.length + " bytes" : subject) + "]";
  }
}
