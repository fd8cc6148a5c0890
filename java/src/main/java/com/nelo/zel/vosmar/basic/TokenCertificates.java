package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import java.nio.file.Path;

/**
 * The certificates of a token, from the request to the renewal: made on it, taken in, and handed out
 * as files.
 */
public final class TokenCertificates {
  private final CryptographicToken token;

  TokenCertificates(CryptographicToken token) {
    this.token = token;
  }

  /**
   * Receives the certificate that was issued for a pending request.
   *
   * @param source the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot
   *     be read, {@link ResultCode#REQKEY_FOR_CERT_NULL} when there is no such request
   */
  public void receive(Path source, Encoding encoding) throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ReceivePersonalCertificate(
            token.module, token.tokenLabel, token.password(), token.secondaryFile(),
            token.secondaryPassword(), source.toString(), encoding.isBase64()),
        source);
  }

  /**
   * Imports a certificate, with its private key or alone.
   *
   * @param label the label of the new entry
   * @param certificate a DER certificate
   * @param privateKey its key: PKCS#8, or RSA or EC in their own forms, as DER; null for none
   * @throws CMSKeyDatabaseException with {@link ResultCode#VALIDATION_KEY_PAIR} when they do not
   *     belong together
   */
  public void importCertificate(String label, byte[] certificate, byte[] privateKey)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ImportCertificate(
            token.module, token.tokenLabel, token.password(), token.secondaryFile(),
            token.secondaryPassword(), requireNonNull(label), certificate.length, certificate,
            lengthOf(privateKey), privateKey),
        label);
  }

  /**
   * Adds a signer's certificate.
   *
   * @param label the label of the new entry
   * @param source the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot
   *     be read
   */
  public void addSigner(String label, Path source, Encoding encoding)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_AddSignerCertificate(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            source.toString(), encoding.isBase64()),
        label);
  }

  /**
   * Writes a certificate to a file.
   *
   * @param label the label of its entry
   * @param target the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when the token has no
   *     such entry
   */
  public void extract(String label, Path target, Encoding encoding)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ExtractCertificate(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            target.toString(), encoding.isBase64()),
        label);
  }

  /**
   * Makes a key pair on the token and a certificate request for it.
   *
   * @param request what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   * @throws IllegalArgumentException when it shall ask for extensions, which a token does not do
   */
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    if (request.extensions().length > 0) {
      throw new IllegalArgumentException("a request made on a token asks for no extensions");
    }
    token.answers.check(
        token.c_CreatePersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), request.label(),
            request.keyType().selector(), request.subject(),
            request.signatureAlgorithm().selector(), request.fileName()),
        request.label());
  }

  /**
   * Imports a pending request, with its private key or for a key that the token has.
   *
   * @param label the label of the new entry
   * @param request a DER CertificationRequest (PKCS#10, RFC&nbsp;2986)
   * @param privateKey its key as DER, or null
   * @throws CMSKeyDatabaseException with {@link ResultCode#VALIDATION_KEY_PAIR} when they do not
   *     belong together
   */
  public void importRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_ImportPersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            request.length, request, lengthOf(privateKey), privateKey),
        label);
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
    token.answers.check(
        token.c_ExtractPersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            target.toString()),
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
    token.answers.check(
        token.c_RecreatePersonalCertificateRequest(
            token.module, token.tokenLabel, token.password(), requireNonNull(label),
            algorithm.selector(), target.toString()),
        label);
  }

  /**
   * Makes a key pair on the token and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   * @throws IllegalArgumentException when it shall be the default key, have given extensions or be
   *     written to a file: with a token none of these is possible
   */
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    if (certificate.isDefaultKey()
        || certificate.extensions().length > 0
        || certificate.fileName() != null) {
      throw new IllegalArgumentException(
          "a token has no default key, and takes neither extensions nor files");
    }
    token.answers.check(
        token.c_CreateSelfSignedCertificate(
            token.module, token.tokenLabel, token.password(), certificate.version(),
            certificate.label(), certificate.keyType().selector(), certificate.subject(),
            certificate.validityDays(), certificate.signatureAlgorithm().selector()),
        certificate.label());
  }

  /**
   * Whether a certificate would renew one of this token: same subject and key, other certificate.
   *
   * @param certificate a DER certificate
   * @return true when {@link #renew} would take it
   * @throws CMSKeyDatabaseException when the token cannot be opened or read
   */
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return token.answers.holds(
        token.c_IsPersonalCertificateRenewal(
            token.module, token.tokenLabel, token.password(), certificate.length, certificate),
        () -> token.labels().signers());
  }

  /**
   * Puts a certificate in the place of the one that it renews.
   *
   * @param certificate a DER certificate
   * @throws CMSKeyDatabaseException when it renews none
   */
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    token.answers.check(
        token.c_RenewPersonalCertificate(
            token.module, token.tokenLabel, token.password(), certificate.length, certificate));
  }

  private static int lengthOf(byte[] bytes) {
    return bytes == null ? 0 : bytes.length;
  }
}
