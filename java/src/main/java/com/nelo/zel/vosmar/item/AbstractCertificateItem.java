package com.nelo.zel.vosmar.item;

import java.io.ByteArrayInputStream;
import java.security.cert.CertificateException;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.time.Instant;

/**
 * An X.509 certificate (RFC&nbsp;5280) as a key database holds it.
 *
 * <p>An item made from bytes alone knows nothing but {@link #der()} and what {@link #x509()} reads
 * out of them: its label and the other objects are null, its numbers 0.
 *
 * @param <N> the class of names
 * @param <B> the class of BER objects
 */
public abstract class AbstractCertificateItem<
        N extends AbstractDNItem, B extends AbstractBERObject>
    extends AbstractSignedItem<N, B> {
  private final int version;
  private final String label;
  private final N issuer;
  private final long effectTime;
  private final long expireTime;
  private final byte[] tbsCertificate;

  /**
   * Makes an item that takes the bytes over.
   *
   * @param version the X.509 version
   * @param keySize bits of the public key
   * @param label the name of the entry
   * @param subject whom the certificate names
   * @param issuer who signed it
   * @param effectTime since when it is valid, in seconds since 1970-01-01 UTC
   * @param expireTime until when it is valid, in seconds since 1970-01-01 UTC
   * @param subjectPublicKeyInfo the public key
   * @param signature the issuer's signature
   * @param signatureAlgorithm its AlgorithmIdentifier
   * @param signatureAlgorithmOid its algorithm in dotted numbers
   * @param signatureAlgorithmName its algorithm's short name
   * @param tbsCertificate the DER TBSCertificate
   * @param der the DER certificate
   */
  protected AbstractCertificateItem(
      int version,
      int keySize,
      String label,
      N subject,
      N issuer,
      long effectTime,
      long expireTime,
      B subjectPublicKeyInfo,
      byte[] signature,
      B signatureAlgorithm,
      String signatureAlgorithmOid,
      String signatureAlgorithmName,
      byte[] tbsCertificate,
      byte[] der) {
    super(
        keySize,
        subject,
        subjectPublicKeyInfo,
        signature,
        signatureAlgorithm,
        signatureAlgorithmOid,
        signatureAlgorithmName,
        der);
    this.version = version;
    this.label = label;
    this.issuer = issuer;
    this.effectTime = effectTime;
    this.expireTime = expireTime;
    this.tbsCertificate = tbsCertificate;
  }

  /**
   * Makes an item that carries only a copy of its bytes.
   *
   * @param der a DER certificate
   */
  protected AbstractCertificateItem(byte[] der) {
    this(0, 0, null, null, null, 0, 0, null, null, null, null, null, null, der.clone());
  }

  /**
   * The certificate as the Java platform knows it.
   *
   * @return the parsed certificate
   * @throws CertificateException when the bytes are no certificate
   */
  public X509Certificate x509() throws CertificateException {
    CertificateFactory factory = CertificateFactory.getInstance("X.509");
    return (X509Certificate) factory.generateCertificate(new ByteArrayInputStream(der()));
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
   * The name of the entry that the certificate belongs to.
   *
   * @return the label
   */
  public String label() {
    return label;
  }

  /**
   * Who signed it.
   *
   * @return the issuer
   */
  public N issuer() {
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
   * The part that is signed.
   *
   * @return a copy of the DER TBSCertificate
   */
  public byte[] tbsCertificate() {
    return copyOf(tbsCertificate);
  }

  @Override
  public String toString() {
    return "CertificateItem[" + (subject() == null ? der().length + " bytes" : subject()) + "]";
  }
}
