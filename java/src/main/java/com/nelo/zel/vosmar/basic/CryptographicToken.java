package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * A PKCS#11 token, reached through the module that its maker delivers: personal keys with their
 * certificates, the certificates of signers, and pending requests, each under a label.
 *
 * <p>A module is named by its file, or by the name that p11-kit's configuration has for it, such as
 * {@code softhsm2}. Arguments that it wants when it is initialised follow after {@code ?args=}.
 *
 * <p>An object of this class remembers a module, a token's label and its password. It keeps no session
 * open: each operation opens the token, works, and closes it. {@link #close()} wipes the password.
 * What {@link CMSKeyDatabase} says of passwords and strings holds here too, and so does what it says of
 * reasons that are told a moment later.
 *
 * <p>A secondary key database can stand beside a token: issuers that the token has no room for are
 * looked up there, and the signers that come along with a personal certificate are put there.
 */
public final class CryptographicToken extends PasswordHolder {
  private static final int READ_FAILED = 12;
  private static final int NO_SUCH_LABEL = 117;

  // Filled by the native method while the tokens of a module are listed.
  private static final List<String> TOKEN_LABELS = new ArrayList<>();

  private final String module;
  private final String tokenLabel;
  private String secondaryFile;
  private char[] secondaryPassword;

  // Filled by the native method while the labels are listed.
  private final List<String> personalLabels = new ArrayList<>();
  private final List<String> signerLabels = new ArrayList<>();
  private final List<String> requestLabels = new ArrayList<>();

  private CryptographicToken(String module, String tokenLabel, char[] password) {
    super(module + ", " + tokenLabel, password);
    this.module = module;
    this.tokenLabel = tokenLabel;
  }

  /**
   * The labels of a token, in the order of the token.
   *
   * @param personal those of certificates with their private keys
   * @param signers those of certificates alone
   * @param requests those of pending requests
   */
  public record Labels(List<String> personal, List<String> signers, List<String> requests) {}

  /**
   * Lists the tokens that a module offers.
   *
   * @param module the PKCS#11 module, by file or by name
   * @return the labels of its tokens
   * @throws CMSKeyDatabaseException when the module cannot be used
   */
  public static List<String> list(String module) throws CMSKeyDatabaseException {
    KMSystem.start();
    synchronized (TOKEN_LABELS) {
      TOKEN_LABELS.clear();
      int code = c_GetCryptoTokenLabelList(module);
      if (code != 0) {
        throw new CMSKeyDatabaseException(code, module);
      }
      return List.copyOf(TOKEN_LABELS);
    }
  }

  /**
   * Opens a token to see that the password fits.
   *
   * @param module the PKCS#11 module, by file or by name
   * @param tokenLabel the label of the token
   * @param password its password, or null for a token that asks for none
   * @return the token
   * @throws CMSKeyDatabaseException when there is no such token, or the password is wrong
   */
  public static CryptographicToken open(String module, String tokenLabel, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CryptographicToken token = new CryptographicToken(module, tokenLabel, password);
    try {
      token.labels();
    } catch (CMSKeyDatabaseException unusable) {
      token.close();
      throw unusable;
    }
    return token;
  }

  /**
   * Whether a token has to be opened with a password.
   *
   * @param module the PKCS#11 module, by file or by name
   * @param tokenLabel the label of the token
   * @return true when it has; false also when the library cannot tell, for the reason does not reach
   *     Java
   * @throws CMSKeyDatabaseException when the library cannot be started
   */
  public static boolean isPasswordRequired(String module, String tokenLabel)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CryptographicToken token = new CryptographicToken(module, tokenLabel, null)) {
      return token.c_IsPasswordRequired(token.module, tokenLabel);
    }
  }

  /**
   * Changes the password of a token.
   *
   * @param module the PKCS#11 module, by file or by name
   * @param tokenLabel the label of the token
   * @param oldPassword its password
   * @param newPassword its password from now on
   * @throws CMSKeyDatabaseException when the old password is wrong or the new one is refused
   */
  public static void changePassword(
      String module, String tokenLabel, char[] oldPassword, char[] newPassword)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CryptographicToken token = new CryptographicToken(module, tokenLabel, oldPassword)) {
      token.check(
          token.c_ChangeKeyDbPwd(
              token.module, tokenLabel, token.password(), new String(newPassword)));
    }
  }

  /**
   * Puts a key database beside the token, for {@link #receiveCertificate} and {@link
   * #importCertificate}.
   *
   * @param file the key database, or null for none from now on
   * @param itsPassword the password of the database, or null to use its stash file
   */
  public synchronized void useSecondaryKeyDatabase(Path file, char[] itsPassword) {
    wipe(secondaryPassword);
    secondaryFile = file == null ? null : file.toString();
    secondaryPassword = copyOf(itsPassword);
  }

  /**
   * Lists the labels.
   *
   * @return the labels of personal certificates, signers and requests
   * @throws CMSKeyDatabaseException when the token cannot be opened or read
   */
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    personalLabels.clear();
    signerLabels.clear();
    requestLabels.clear();
    check(c_BuildKeyLabelList(module, tokenLabel, password()));
    return new Labels(
        List.copyOf(personalLabels), List.copyOf(signerLabels), List.copyOf(requestLabels));
  }

  /**
   * Reads a personal key or a signer's certificate.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with code 117 when the token has no such entry
   */
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    KeyItem item = c_GetKeyItemByLabel(module, tokenLabel, password(), label, false);
    if (item == null) {
      Labels listed = labels();
      boolean known = listed.personal().contains(label) || listed.signers().contains(label);
      throw failure(known ? READ_FAILED : NO_SUCH_LABEL, label);
    }
    return item;
  }

  /**
   * Reads a pending request.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    KeyItem item = c_GetKeyItemByLabel(module, tokenLabel, password(), label, true);
    if (item == null) {
      boolean known = labels().requests().contains(label);
      throw failure(known ? READ_FAILED : NO_SUCH_LABEL, label);
    }
    return item;
  }

  /**
   * Deletes a personal key or a signer's certificate.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with code 117 when the token has no such entry
   */
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    check(c_DeleteKeyItemByLabel(module, tokenLabel, password(), label, false), label);
  }

  /**
   * Deletes a pending request and its key pair.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    check(c_DeleteKeyItemByLabel(module, tokenLabel, password(), label, true), label);
  }

  /**
   * Receives the certificate that was issued for a pending request.
   *
   * @param certificate the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with code 87 when the file cannot be read, 108 when there is no
   *     such request
   */
  public void receiveCertificate(Path certificate, Encoding encoding)
      throws CMSKeyDatabaseException {
    check(
        c_ReceivePersonalCertificate(
            module,
            tokenLabel,
            password(),
            secondaryFile(),
            secondaryPassword(),
            certificate.toString(),
            encoding.isBase64()),
        certificate.toString());
  }

  /**
   * Imports a certificate, with its private key or alone.
   *
   * @param label the label of the new entry
   * @param certificate a DER certificate
   * @param privateKey its key: PKCS#8, or RSA or EC in their own forms, as DER; null for none
   * @throws CMSKeyDatabaseException with code 62 when they do not belong together
   */
  public void importCertificate(String label, byte[] certificate, byte[] privateKey)
      throws CMSKeyDatabaseException {
    check(
        c_ImportCertificate(
            module,
            tokenLabel,
            password(),
            secondaryFile(),
            secondaryPassword(),
            label,
            certificate.length,
            certificate,
            lengthOf(privateKey),
            privateKey),
        label);
  }

  /**
   * Adds a signer's certificate.
   *
   * @param label the label of the new entry
   * @param certificate the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with code 87 when the file cannot be read
   */
  public void addSigner(String label, Path certificate, Encoding encoding)
      throws CMSKeyDatabaseException {
    check(
        c_AddSignerCertificate(
            module, tokenLabel, password(), label, certificate.toString(), encoding.isBase64()),
        label);
  }

  /**
   * Writes a certificate to a file.
   *
   * @param label the label of its entry
   * @param target the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with code 117 when the token has no such entry
   */
  public void extractCertificate(String label, Path target, Encoding encoding)
      throws CMSKeyDatabaseException {
    check(
        c_ExtractCertificate(
            module, tokenLabel, password(), label, target.toString(), encoding.isBase64()),
        label);
  }

  /**
   * Makes a key pair on the token and a certificate request for it.
   *
   * @param request what it shall be like
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   * @throws IllegalArgumentException when it shall ask for extensions, which a token does not do
   */
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    if (request.extensions().length > 0) {
      throw new IllegalArgumentException("a request made on a token asks for no extensions");
    }
    check(
        c_CreatePersonalCertificateRequest(
            module, tokenLabel, password(), request.label(), request.keyType().selector(),
            request.subject(), request.signatureAlgorithm().selector(), request.fileName()),
        request.label());
  }

  /**
   * Imports a pending request, with its private key or for a key that the token has.
   *
   * @param label the label of the new entry
   * @param request a DER CertificationRequest (PKCS#10, RFC&nbsp;2986)
   * @param privateKey its key as DER, or null
   * @throws CMSKeyDatabaseException with code 62 when they do not belong together
   */
  public void importRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException {
    check(
        c_ImportPersonalCertificateRequest(
            module,
            tokenLabel,
            password(),
            label,
            request.length,
            request,
            lengthOf(privateKey),
            privateKey),
        label);
  }

  /**
   * Writes a pending request to a file once more, in Base64.
   *
   * @param label its label
   * @param target the file
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    check(
        c_ExtractPersonalCertificateRequest(
            module, tokenLabel, password(), label, target.toString()),
        label);
  }

  /**
   * Writes a pending request to a file once more, signed anew.
   *
   * @param label its label
   * @param algorithm the digest of the signature
   * @param target the file
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public void extractRequest(String label, SignatureAlgorithm algorithm, Path target)
      throws CMSKeyDatabaseException {
    check(
        c_RecreatePersonalCertificateRequest(
            module, tokenLabel, password(), label, algorithm.selector(), target.toString()),
        label);
  }

  /**
   * Makes a key pair on the token and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   * @throws IllegalArgumentException when it shall be the default key, have given extensions or be
   *     written to a file: with a token none of these is possible
   */
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    if (certificate.isDefaultKey()
        || certificate.extensions().length > 0
        || certificate.fileName() != null) {
      throw new IllegalArgumentException("a token has no default key, extensions and files");
    }
    check(
        c_CreateSelfSignedCertificate(
            module,
            tokenLabel,
            password(),
            certificate.version(),
            certificate.label(),
            certificate.keyType().selector(),
            certificate.subject(),
            certificate.validityDays(),
            certificate.signatureAlgorithm().selector()),
        certificate.label());
  }

  /**
   * Whether a certificate would renew one of this token: same subject and key, other certificate.
   *
   * @param certificate a DER certificate
   * @return true when {@link #renewCertificate} would take it
   * @throws CMSKeyDatabaseException when the token cannot be opened or read
   */
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    boolean renewal =
        c_IsPersonalCertificateRenewal(
            module, tokenLabel, password(), certificate.length, certificate);
    if (!renewal) {
      labels();
    }
    return renewal;
  }

  /**
   * Puts a certificate in the place of the one that it renews.
   *
   * @param certificate a DER certificate
   * @throws CMSKeyDatabaseException when it renews none
   */
  public void renewCertificate(byte[] certificate) throws CMSKeyDatabaseException {
    check(
        c_RenewPersonalCertificate(
            module, tokenLabel, password(), certificate.length, certificate));
  }

  /** Wipes the passwords. The token can be used no longer through this object. */
  @Override
  public synchronized void close() {
    super.close();
    wipe(secondaryPassword);
  }

  private synchronized String secondaryFile() {
    return secondaryFile;
  }

  private synchronized String secondaryPassword() {
    return textOf(secondaryPassword);
  }

  private static int lengthOf(byte[] bytes) {
    return bytes == null ? 0 : bytes.length;
  }

  /** Called by the native library for each token while the tokens of a module are listed. */
  private static void addTokenLabel(String label) {
    TOKEN_LABELS.add(label);
  }

  /** Called by the native library for each certificate with a private key. */
  private void addPersonalKeyLabel(String label) {
    personalLabels.add(label);
  }

  /** Called by the native library for each certificate without a private key. */
  private void addSignerKeyLabel(String label) {
    signerLabels.add(label);
  }

  /** Called by the native library for each pending request. */
  private void addRequestKeyLabel(String label) {
    requestLabels.add(label);
  }

  // The token as a whole.

  private static native int c_GetCryptoTokenLabelList(String moduleName);

  private native boolean c_IsPasswordRequired(String moduleName, String tokenLabel);

  private native int c_ChangeKeyDbPwd(
      String moduleName, String tokenLabel, String oldPassword, String newPassword);

  // Entries.

  private native int c_BuildKeyLabelList(
      String moduleName, String tokenLabel, String tokenPassword);

  private native KeyItem c_GetKeyItemByLabel(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      boolean isRequestKey);

  private native int c_DeleteKeyItemByLabel(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      boolean isRequestKey);

  // Certificates.

  private native int c_ReceivePersonalCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String secondaryKeyDbFileName,
      String secondaryKeyDbPassword,
      String certFileName,
      boolean isBase64);

  private native int c_ImportCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String secondaryKeyDbFileName,
      String secondaryKeyDbPassword,
      String keyLabel,
      int certLength,
      byte[] certificate,
      int keyLength,
      byte[] privateKey);

  private native int c_AddSignerCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      String certFileName,
      boolean isBase64);

  private native int c_ExtractCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      String certFileName,
      boolean isBase64);

  // New keys and requests.

  private native int c_CreatePersonalCertificateRequest(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      int keySize,
      DNItem subject,
      int signatureAlgorithm,
      String certReqFileName);

  private native int c_ImportPersonalCertificateRequest(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      int requestLength,
      byte[] request,
      int keyLength,
      byte[] privateKey);

  private native int c_RecreatePersonalCertificateRequest(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      int signatureAlgorithm,
      String certReqFileName);

  private native int c_ExtractPersonalCertificateRequest(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      String keyLabel,
      String certReqFileName);

  private native int c_CreateSelfSignedCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      int version,
      String keyLabel,
      int keySize,
      DNItem subject,
      int validityDays,
      int signatureAlgorithm);

  // Renewal.

  private native boolean c_IsPersonalCertificateRenewal(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      int certLength,
      byte[] certificate);

  private native int c_RenewPersonalCertificate(
      String moduleName,
      String tokenLabel,
      String tokenPassword,
      int certLength,
      byte[] certificate);
}
