package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/**
 * The certificates and requests of a store: making, issuing and taking them in, renewing and
 * validating them, and writing them to files. What its store does not do it refuses as {@link
 * EntryStore} says. It lives as long as its store.
 */
public interface Certificates {
  /**
   * Makes a key and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException;

  /**
   * Makes a key and a request for a certificate, which both wait here for {@link #receive}.
   *
   * @param request what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException;

  /**
   * Issues a certificate for a request, signed by a key of this store.
   *
   * @param issue how it shall be issued
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     issuer's label, with {@link ResultCode#ISSUING_CERTIFICATE} when the issuer may not issue
   */
  void issue(CertificateIssue issue) throws CMSKeyDatabaseException;

  /**
   * Takes in the certificate for a pending request. The request becomes a key of the same label.
   *
   * @param source a file with the certificate, or with a PKCS&nbsp;#7 bundle that has it
   * @param encoding the form of the file
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot
   *     be read, with {@link ResultCode#REQKEY_FOR_CERT_NULL} when no request belongs to the
   *     certificate
   */
  void receive(Path source, Encoding encoding, boolean makeDefault) throws CMSKeyDatabaseException;

  /**
   * Takes in the certificate for a pending request, as above, and leaves the default key as it is.
   *
   * @param source a file with the certificate, or with a PKCS&nbsp;#7 bundle that has it
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException as above
   */
  default void receive(Path source, Encoding encoding) throws CMSKeyDatabaseException {
    receive(source, encoding, false);
  }

  /**
   * Adds the certificate of a signer, such as a certificate authority, and marks it as trusted
   * where the store has such marks.
   *
   * @param label the label of the new entry
   * @param source the file of the certificate
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken, with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot be read
   */
  void add(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException;

  /**
   * Whether a certificate would renew one of this store: same subject and key, other certificate.
   *
   * @param certificate a DER certificate
   * @return true when {@link #renew} would take it
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException;

  /**
   * Puts a certificate in the place of the one that it renews.
   *
   * @param certificate a DER certificate
   * @throws CMSKeyDatabaseException when it renews none
   */
  void renew(byte[] certificate) throws CMSKeyDatabaseException;

  /**
   * Whether a certificate is valid now, with a chain of certificates of this store that ends at a
   * trusted one (RFC&nbsp;5280, section 6).
   *
   * @param certificate a DER certificate
   * @return false whatever is wrong with it
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  boolean isValid(byte[] certificate) throws CMSKeyDatabaseException;

  /**
   * Writes a certificate to a file.
   *
   * @param label the label of its entry
   * @param target the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException;

  /**
   * Writes a pending request to a file once more, in Base64.
   *
   * @param label its label
   * @param target the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  void extractRequest(String label, Path target) throws CMSKeyDatabaseException;

  /**
   * Writes a pending request to a file once more, signed anew.
   *
   * @param label its label
   * @param algorithm the digest of the signature
   * @param target the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException;
}
