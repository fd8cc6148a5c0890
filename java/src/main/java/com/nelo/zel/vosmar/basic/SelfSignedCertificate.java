package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.Objects;

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
public final class SelfSignedCertificate extends NewKeyWish<SelfSignedCertificate> {
  private static final int X509_V3 = 3;

  private Validity validity = Validity.OF_A_YEAR;
  private boolean defaultKey;
  private String file;
  private Encoding encoding = Encoding.BASE64;

  /**
   * A certificate of X.509 version 3, valid for 365 days, signed by an algorithm as strong as its
   * key, fit to be a CA.
   *
   * @param label the name of the new entry
   * @param subject whom the certificate names
   * @param keyType what key is made for it
   */
  public SelfSignedCertificate(String label, DNItem subject, KeyType keyType) {
    super(label, subject, keyType);
  }

  /**
   * Sets the period of validity, which begins now.
   *
   * @param days how long, at least 1
   * @return this object
   */
  public SelfSignedCertificate validFor(int days) {
    validity = new Validity(days);
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
   * Has the certificate written to a file as well.
   *
   * @param path the file
   * @param as its form
   * @return this object
   */
  public SelfSignedCertificate writtenTo(Path path, Encoding as) {
    file = path.toString();
    encoding = Objects.requireNonNull(as);
    return this;
  }

  int version() {
    return X509_V3;
  }

  int validityDays() {
    return validity.days();
  }

  boolean isDefaultKey() {
    return defaultKey;
  }

  /** The file, or null when none is written. */
  String fileName() {
    return file;
  }

  boolean isBase64() {
    return encoding.isBase64();
  }

  @Override
  SelfSignedCertificate self() {
    return this;
  }
}
