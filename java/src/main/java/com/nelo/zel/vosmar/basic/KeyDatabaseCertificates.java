package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import java.nio.file.Path;

/**
 * The certificates and requests of a key database: making, issuing and taking them in, renewing and
 * validating them, and writing them to files. It lives as long as its database.
 */
public final class KeyDatabaseCertificates {
  private final CMSKeyDatabase db;

  KeyDatabaseCertificates(CMSKeyDatabase db) {
    this.db = db;
  }

  /**
   * Makes a key and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    int code;
    if (certificate.isPlain()) {
      code =
          db.c_CreateNewSelfSignedCertificate(
              db.file, db.password(), certificate.version(), certificate.label(),
              certificate.isDefaultKey(), certificate.keyType().selector(), certificate.subject(),
              certificate.validityDays(), certificate.fileName(), certificate.isBase64());
    } else {
      code =
          db.c_CreateNewSelfSignedCertificateSigExt(
              db.file, db.password(), certificate.version(), certificate.label(),
              certificate.isDefaultKey(), certificate.keyType().selector(), certificate.subject(),
              certificate.validityDays(), certificate.signatureAlgorithm().selector(),
              certificate.extensions().length, certificate.extensions(), certificate.fileName(),
              certificate.isBase64());
    }
    db.answers.check(code, certificate.label());
  }

  /**
   * Makes a key and a request for a certificate, which both wait here for {@link #receive}.
   *
   * @param request what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    int code;
    if (request.isPlain()) {
      code =
          db.c_CreateNewCertRequest(
              db.file, db.password(), request.label(), request.keyType().selector(),
              request.subject(), request.fileName(), true);
    } else {
      code =
          db.c_CreateNewCertRequestSigExt(
              db.file, db.password(), request.label(), request.keyType().selector(),
              request.subject(), request.signatureAlgorithm().selector(),
              request.extensions().length, request.extensions(), request.fileName(), true);
    }
    db.answers.check(code, request.label());
  }

  /**
   * Issues a certificate for a request, signed by a key of this database.
   *
   * @param issue how it shall be issued
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     issuer's label, with {@link ResultCode#ISSUING_CERTIFICATE} when the issuer may not issue
   */
  public void issue(CertificateIssue issue) throws CMSKeyDatabaseException {
    SignatureAlgorithm algorithm = issue.wishedAlgorithm();
    int code;
    if (algorithm == null) {
      code =
          db.c_IssueCertificate(
              db.file, db.password(), issue.issuerLabel(), issue.version(), issue.serialNumber(),
              issue.validityDays(), issue.requestFileName(), issue.certificateFileName(),
              issue.isBase64());
    } else {
      code =
          db.c_IssueCertificateSig(
              db.file, db.password(), issue.issuerLabel(), issue.version(), issue.serialNumber(),
              issue.validityDays(), algorithm.selector(), issue.requestFileName(),
              issue.certificateFileName(), issue.isBase64());
    }
    db.answers.check(code, issue.issuerLabel());
  }

  /**
   * Takes in the certificate for a pending request. The request becomes a key of the same label.
   *
   * @param source a file with the certificate, or with a PKCS&nbsp;#7 bundle that has it
   * @param encoding the form of the file
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with {@link ResultCode#REQKEY_FOR_CERT_NULL} when no request
   *     belongs to the certificate
   */
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ReceiveCert(
            db.file, db.password(), source.toString(), encoding.isBase64(), makeDefault),
        source);
  }

  /**
   * Adds the certificate of a certificate authority.
   *
   * @param label its label
   * @param source the file of the certificate
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  public void addCa(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_AddCaCert(
            db.file, db.password(), requireNonNull(label), source.toString(),
            encoding.isBase64()),
        label);
  }

  /**
   * Whether a certificate would renew one of this database: same subject and key, other certificate.
   *
   * @param certificate a DER certificate
   * @return true when {@link #renew} would take it
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return db.answers.holds(
        db.c_CheckCertAsRenewal(db.file, db.password(), certificate.length, certificate),
        () -> db.labels().keys());
  }

  /**
   * Puts a certificate in the place of the one that it renews.
   *
   * @param certificate a DER certificate
   * @throws CMSKeyDatabaseException when it renews none
   */
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    db.answers.check(db.c_RenewCert(db.file, db.password(), certificate.length, certificate));
  }

  /**
   * Whether a certificate is valid now, with a chain of certificates of this database that ends at a
   * trusted one (RFC&nbsp;5280, section 6).
   *
   * @param certificate a DER certificate
   * @return false whatever is wrong with it
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public boolean isValid(byte[] certificate) throws CMSKeyDatabaseException {
    return db.answers.holds(
        db.c_ValidateCertificateChain(db.file, db.password(), certificate, certificate.length),
        () -> db.labels().keys());
  }

  /**
   * Writes a pending request to a file once more, in Base64.
   *
   * @param label its label
   * @param target the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCertReq(db.file, db.password(), requireNonNull(label), target.toString()),
        label);
  }

  /**
   * Writes a pending request to a file once more, signed anew.
   *
   * @param label its label
   * @param algorithm the digest of the signature
   * @param target the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  public void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCertReqSig(
            db.file, db.password(), requireNonNull(label), algorithm.selector(),
            target.toString()),
        label);
  }

  /**
   * Writes a certificate to a file.
   *
   * @param label the label of its entry
   * @param target the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  public void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCert(
            db.file, db.password(), requireNonNull(label), target.toString(),
            encoding.isBase64()),
        label);
  }
}
