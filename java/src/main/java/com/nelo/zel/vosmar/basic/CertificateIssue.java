package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.Objects;

/**
 * How a certificate shall be issued for a request:
 *
 * <pre>
 * new CertificateIssue("ca", Path.of("server.csr"), Path.of("server.pem")).validFor(90)
 * </pre>
 */
public final class CertificateIssue extends SignatureWish<CertificateIssue> {
  private static final int X509_V3 = 3;
  private static final String RANDOM_SERIAL_NUMBER = "";

  private final String issuerLabel;
  private final String requestFile;
  private final String certificateFile;
  private Validity validity = Validity.OF_A_YEAR;
  private String serialNumber = RANDOM_SERIAL_NUMBER;
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
    this.issuerLabel = Objects.requireNonNull(issuerLabel);
    this.requestFile = requestFile.toString();
    this.certificateFile = certificateFile.toString();
  }

  /**
   * Sets the period of validity, which begins now.
   *
   * @param days how long, at least 1
   * @return this object
   */
  public CertificateIssue validFor(int days) {
    validity = new Validity(days);
    return this;
  }

  /**
   * Sets the serial number.
   *
   * @param number decimal, or hexadecimal after {@code 0x}
   * @return this object
   */
  public CertificateIssue numbered(String number) {
    serialNumber = Objects.requireNonNull(number);
    return this;
  }

  /**
   * Sets the form of the certificate file.
   *
   * @param form DER or Base64
   * @return this object
   */
  public CertificateIssue writtenAs(Encoding form) {
    encoding = Objects.requireNonNull(form);
    return this;
  }

  int version() {
    return X509_V3;
  }

  String issuerLabel() {
    return issuerLabel;
  }

  String requestFileName() {
    return requestFile;
  }

  String certificateFileName() {
    return certificateFile;
  }

  int validityDays() {
    return validity.days();
  }

  String serialNumber() {
    return serialNumber;
  }

  boolean isBase64() {
    return encoding.isBase64();
  }

  @Override
  CertificateIssue self() {
    return this;
  }
}
