package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/**
 * What a self-signed certificate shall be like. All but the first three are optional:
 *
 * <pre>
 * new SelfSignedCertificate("server", DNItem.parse("CN=localhost"), KeyType.ec(256))
 *     .validFor(90)
 *     .asDefaultKey()
 *     .writtenTo(Path.of("server.pem"), Encoding.BASE64)
 * </pre>
 */
public final class SelfSignedCertificate {
  private static final int X509_V3 = 3;

  private final String label;
  private final DNItem subject;
  private final KeyType keyType;
  private int validityDays = 365;
  private boolean defaultKey;
  private SignatureAlgorithm signatureAlgorithm;
  private byte[] extensions = {};
  private Path file;
  private Encoding encoding = Encoding.BASE64;

  /**
   * A certificate of X.509 version 3, valid for 365 days, signed by an algorithm as strong as its key,
   * fit to be a CA.
   *
   * @param label the name of the new entry
   * @param subject whom the certificate names
   * @param keyType what key is made for it
   */
  public SelfSignedCertificate(String label, DNItem subject, KeyType keyType) {
    this.label = label;
    this.subject = subject;
    this.keyType = keyType;
  }

  /**
   * Sets the period of validity, which begins now.
   *
   * @param days how long, at least 1
   * @return this object
   */
  public SelfSignedCertificate validFor(int days) {
    if (days < 1) {
      throw new IllegalArgumentException("a certificate is valid for a day at least");
    }
    validityDays = days;
    return this;
  }

  /**
   * Makes the key the default key of its database.
   *
   * @return this object
   */
  public SelfSignedCertificate asDefaultKey() {
    defaultKey = true;
    return this;
  }

  /**
   * Sets the digest of the signature. Ed25519 keys ignore it.
   *
   * @param algorithm the digest, or null to leave it to the library
   * @return this object
   */
  public SelfSignedCertificate signedWith(SignatureAlgorithm algorithm) {
    signatureAlgorithm = algorithm;
    return this;
  }

  /**
   * Sets the extensions, in place of those of a CA.
   *
   * @param der a DER {@code Extensions} (RFC&nbsp;5280, section 4.1)
   * @return this object
   */
  public SelfSignedCertificate withExtensions(byte[] der) {
    extensions = der.clone();
    return this;
  }

  /**
   * Has the certificate written to a file as well.
   *
   * @param path the file
   * @param as its form
   * @return this object
   */
  public SelfSignedCertificate writtenTo(Path path, Encoding as) {
    file = path;
    encoding = as;
    return this;
  }

  int version() {
    return X509_V3;
  }

  String label() {
    return label;
  }

  DNItem subject() {
    return subject;
  }

  KeyType keyType() {
    return keyType;
  }

  int validityDays() {
    return validityDays;
  }

  boolean isDefaultKey() {
    return defaultKey;
  }

  /** Whether the digest and the extensions are left to the library. */
  boolean isPlain() {
    return signatureAlgorithm == null && extensions.length == 0;
  }

  SignatureAlgorithm signatureAlgorithm() {
    return signatureAlgorithm == null ? SignatureAlgorithm.SHA256 : signatureAlgorithm;
  }

  byte[] extensions() {
    return extensions;
  }

  String fileName() {
    return file == null ? null : file.toString();
  }

  boolean isBase64() {
    return encoding.isBase64();
  }
}
