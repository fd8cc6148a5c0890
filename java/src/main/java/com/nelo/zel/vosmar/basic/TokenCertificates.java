package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import java.nio.file.Path;

/** The certificates and requests of a token. */
final class TokenCertificates implements Certificates {
  private final CryptographicToken token;

  TokenCertificates(CryptographicToken token) {
    this.token = token;
  }

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    token.refusals.when(makeDefault, Refusals.DEFAULT_KEY);
    token.answers.check(
        token.c_ReceivePersonalCertificate(
            token.module, token.tokenLabel, token.password(), token.secondaryFile(),
            token.secondaryPassword(), source.toString(), encoding.isBase64()),
        source);
  }

  @Override
  public void add(String label, Path source, Encoding encoding)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_AddSignerCertificate(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            source.toString(), encoding.isBase64()),
        label);
  }

  @Override
  public void extract(String label, Path target, Encoding encoding)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ExtractCertificate(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            target.toString(), encoding.isBase64()),
        label);
  }

  @Override
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    token.refusals.when(request.extensions().length > 0, Refusals.EXTENSIONS);
    token.answers.check(
        token.c_CreatePersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), request.label(),
            request.keyType().selector(), request.subject(),
            request.signatureAlgorithm().selector(), request.fileName()),
        request.label());
  }

  @Override
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ExtractPersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            target.toString()),
        label);
  }

  @Override
  public void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_RecreatePersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            algorithm.selector(), target.toString()),
        label);
  }

  @Override
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    token.refusals.when(certificate.isDefaultKey(), Refusals.DEFAULT_KEY);
    token.refusals.when(certificate.extensions().length > 0, Refusals.EXTENSIONS);
    token.refusals.when(certificate.fileName() != null, Refusals.NEW_FILE);
    token.answers.check(
        token.c_CreateSelfSignedCertificate(
            token.module, token.tokenLabel, token.password(), certificate.version(),
            certificate.label(), certificate.keyType().selector(), certificate.subject(),
            certificate.validityDays(), certificate.signatureAlgorithm().selector()),
        certificate.label());
  }

  @Override
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return token.answers.holds(
        token.c_IsPersonalCertificateRenewal(
            token.module, token.tokenLabel, token.password(), certificate.length, certificate),
        () -> token.labels().keys());
  }

  @Override
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_RenewPersonalCertificate(
            token.module, token.tokenLabel, token.password(), certificate.length, certificate));
  }

  @Override
  public void issue(CertificateIssue issue) throws CMSKeyDatabaseException {
    throw token.refusals.of(Refusals.ISSUING);
  }

  @Override
  public boolean isValid(byte[] certificate) throws CMSKeyDatabaseException {
    throw token.refusals.of(Refusals.VALIDATING);
  }
}
