package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/**
 * How a certificate shall be issued for a request:
 *
 * <pre>
 * new CertificateIssue("ca", Path.of("server.csr"), Path.of("server.pem")).validFor(90)
 * </pre>
 */
public final class CertificateIssue {
  private static final int X509_V3 = 3;
  private static final String RANDOM_SERIAL_NUMBER = "";

  private final String issuerLabel;
  private final Path requestFile;
  private final Path certificateFile;
  private int validityDays = 365;
  private String serialNumber = RANDOM_SERIAL_NUMBER;
  private SignatureAlgorithm signatureAlgorithm;
  private Encoding encoding = Encoding.BASE64;

  /**
   * A certificate of X.509 version 3, valid for 365 days, with a random serial number, signed by an
   * algorithm as strong as the issuer's key, written in Base64.
   *
   * @param issuerLabel the label of the issuer's key
   * @param requestFile the request, in Base64
   * @param certificateFile where the certificate is written
   */
  public CertificateIssue(String issuerLabel, Path requestFile, Path certificateFile) {
    this.issuerLabel = issuerLabel;
    this.requestFile = requestFile;
    this.certificateFile = certificateFile;
  }

  /**
   * Sets the period of validity, which begins now.
   *
   * @param days how long, at least 1
   * @return this object
   */
  public CertificateIssue validFor(int days) {
    if (days < 1) {
      throw new IllegalArgumentException("a certificate is valid for a day at least");
    }
    validityDays = days;
    return this;
  }

  /**
   * Sets the serial number.
   *
   * @param number decimal, or hexadecimal after {@code 0x}
   * @return this object
   */
  public CertificateIssue numbered(String number) {
    serialNumber = number;
    return this;
  }

  /**
   * Sets the digest of the signature. Ed25519 keys ignore it.
   *
   * @param algorithm the digest, or null to leave it to the library
   * @return this object
   */
  public CertificateIssue signedWith(SignatureAlgorithm algorithm) {
    signatureAlgorithm = algorithm;
    return this;
  }

  /**
   * Sets the form of the certificate file.
   *
   * @param form DER or Base64
   * @return this object
   */
  public CertificateIssue writtenAs(Encoding form) {
    encoding = form;
    return this;
  }

  int version() {
    return X509_V3;
  }

  String issuerLabel() {
    return issuerLabel;
  }

  String requestFileName() {
    return requestFile.toString();
  }

  String certificateFileName() {
    return certificateFile.toString();
  }

  int validityDays() {
    return validityDays;
  }

  String serialNumber() {
    return serialNumber;
  }

  /** The digest, or null when it is left to the library. */
  SignatureAlgorithm signatureAlgorithm() {
    return signatureAlgorithm;
  }

  boolean isBase64() {
    return encoding.isBase64();
  }
}
