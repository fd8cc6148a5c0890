package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import java.nio.file.Path;

/** The certificates of a certificate store, which has no requests and renews nothing. */
final class CertificateStoreCertificates implements Certificates {
  private final MSCertificateStore store;

  CertificateStoreCertificates(MSCertificateStore store) {
    this.store = store;
  }

  @Override
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    store.refusals.when(certificate.isDefaultKey(), Refusals.DEFAULT_KEY);
    store.refusals.when(certificate.fileName() != null, Refusals.NEW_FILE);
    store.answers.check(
        store.c_CreateNewSelfSignedCertificate(
            store.cspName, store.password(), certificate.version(), certificate.label(),
            certificate.keyType().selector(), certificate.subject(), certificate.validityDays(),
            certificate.signatureAlgorithm().selector(), certificate.extensions().length,
            certificate.extensions()),
        certificate.label());
  }

  @Override
  public void add(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    store.answers.check(
        store.c_AddSignerCertificate(
            store.cspName, store.password(), requireNonNull(label), source.toString(),
            encoding.isBase64()),
        label);
  }

  @Override
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.REQUESTS);
  }

  @Override
  public void issue(CertificateIssue issue) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.ISSUING);
  }

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.REQUESTS);
  }

  @Override
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.RENEWING);
  }

  @Override
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.RENEWING);
  }

  @Override
  public boolean isValid(byte[] certificate) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.VALIDATING);
  }

  @Override
  public void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.FILES);
  }

  @Override
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.REQUESTS);
  }

  @Override
  public void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException {
    throw store.refusals.of(Refusals.REQUESTS);
  }
}
