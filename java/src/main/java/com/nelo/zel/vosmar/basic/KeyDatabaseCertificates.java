package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import java.nio.file.Path;

/** The certificates and requests of a key database. */
final class KeyDatabaseCertificates implements Certificates {
  private final CMSKeyDatabase db;

  KeyDatabaseCertificates(CMSKeyDatabase db) {
    this.db = db;
  }

  @Override
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

  @Override
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

  @Override
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

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ReceiveCert(
            db.file, db.password(), source.toString(), encoding.isBase64(), makeDefault),
        source);
  }

  @Override
  public void add(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_AddCaCert(
            db.file, db.password(), requireNonNull(label), source.toString(),
            encoding.isBase64()),
        label);
  }

  @Override
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return db.answers.holds(
        db.c_CheckCertAsRenewal(db.file, db.password(), certificate.length, certificate),
        () -> db.labels().keys());
  }

  @Override
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    db.answers.check(db.c_RenewCert(db.file, db.password(), certificate.length, certificate));
  }

  @Override
  public boolean isValid(byte[] certificate) throws CMSKeyDatabaseException {
    return db.answers.holds(
        db.c_ValidateCertificateChain(db.file, db.password(), certificate, certificate.length),
        () -> db.labels().keys());
  }

  @Override
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCertReq(db.file, db.password(), requireNonNull(label), target.toString()),
        label);
  }

  @Override
  public void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCertReqSig(
            db.file, db.password(), requireNonNull(label), algorithm.selector(),
            target.toString()),
        label);
  }

  @Override
  public void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ExtractCert(
            db.file, db.password(), requireNonNull(label), target.toString(),
            encoding.isBase64()),
        label);
  }
}
