package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import com.nelo.zel.vosmar.internal.Answers;
import com.nelo.zel.vosmar.internal.PasswordHolder;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * A PKCS#11 token, reached through the module that its maker delivers: personal keys with their
 * certificates, the certificates of signers, and pending requests, each under a label.
 *
 * <p>A module is named by its file, or by the name that p11-kit's configuration has for it, such as
 * {@code softhsm2}. Arguments that it wants when it is initialised follow after {@code ?args=}.
 *
 * <p>A secondary key database can stand beside a token: issuers that the token has no room for are
 * looked up there, and the signers that come along with a personal certificate are put there.
 *
 * <p>The library looks for its native methods in this class only; the {@link Certificates} of a
 * token call those of their subject.
 */
public final class CryptographicToken implements EntryStore {
  // Filled by the native method while the tokens of a module are listed.
  private static final List<String> TOKEN_LABELS = new ArrayList<>();

  final String module;
  final String tokenLabel;
  final Answers<CMSKeyDatabaseException> answers;
  final Refusals refusals;
  private final String name;
  private final PasswordHolder held;
  private String secondaryFile;
  private PasswordHolder secondaryHeld = new PasswordHolder("", null);

  // Filled by the native method while the labels are listed.
  private final List<String> personalLabels = new ArrayList<>();
  private final List<String> signerLabels = new ArrayList<>();
  private final List<String> requestLabels = new ArrayList<>();

  private CryptographicToken(String module, String tokenLabel, char[] password) {
    this.module = requireNonNull(module);
    this.tokenLabel = requireNonNull(tokenLabel);
    name = module + ", " + tokenLabel;
    answers = new Answers<>(name, CMSKeyDatabaseException::new);
    refusals = new Refusals(answers, ResultCode.CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT);
    held = new PasswordHolder(name, password);
  }

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
      int code = c_GetCryptoTokenLabelList(requireNonNull(module));
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
   * @return true when it has; false also when the library cannot tell, for the reason does not
   *     reach Java
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
    requireNonNull(oldPassword);
    try (CryptographicToken token = new CryptographicToken(module, tokenLabel, oldPassword)) {
      token.answers.check(
          token.c_ChangeKeyDbPwd(
              token.module, tokenLabel, token.password(), new String(newPassword)));
    }
  }

  @Override
  public Certificates certificates() {
    return new TokenCertificates(this);
  }

  @Override
  public synchronized void useSecondaryKeyDatabase(Path file, char[] itsPassword) {
    secondaryHeld.close();
    secondaryFile = file == null ? null : file.toString();
    secondaryHeld = new PasswordHolder(secondaryFile, itsPassword);
  }

  /** Personal keys first, then the certificates of signers. */
  @Override
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    listLabels();
    List<String> keys = new ArrayList<>(personalLabels);
    keys.addAll(signerLabels);
    return new Labels(List.copyOf(keys), List.copyOf(requestLabels));
  }

  @Override
  public synchronized List<String> personalLabels() throws CMSKeyDatabaseException {
    listLabels();
    return List.copyOf(personalLabels);
  }

  @Override
  public synchronized List<String> signerLabels() throws CMSKeyDatabaseException {
    listLabels();
    return List.copyOf(signerLabels);
  }

  @Override
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(module, tokenLabel, password(), requireNonNull(label), false),
        label,
        () -> labels().keys());
  }

  @Override
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(module, tokenLabel, password(), requireNonNull(label), true),
        label,
        () -> labels().requests());
  }

  @Override
  public Optional<KeyItem> defaultKey() {
    return Optional.empty();
  }

  @Override
  public void insertCertificate(String label, byte[] certificate, boolean trusted)
      throws CMSKeyDatabaseException {
    refusals.when(trusted, Refusals.TRUST);
    importCertificate(label, certificate, 0, null);
  }

  @Override
  public void insertKey(
      String label, byte[] certificate, byte[] privateKey, boolean trusted, boolean makeDefault)
      throws CMSKeyDatabaseException {
    refusals.when(trusted, Refusals.TRUST);
    refusals.when(makeDefault, Refusals.DEFAULT_KEY);
    importCertificate(label, certificate, privateKey.length, privateKey);
  }

  @Override
  public void insertRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException {
    answers.check(
        c_ImportPersonalCertificateRequest(
            module, tokenLabel, password(), requireNonNull(label), request.length, request,
            privateKey == null ? 0 : privateKey.length, privateKey),
        label);
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    answers.check(
        c_DeleteKeyItemByLabel(module, tokenLabel, password(), requireNonNull(label), false),
        label);
  }

  @Override
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    answers.check(
        c_DeleteKeyItemByLabel(module, tokenLabel, password(), requireNonNull(label), true),
        label);
  }

  @Override
  public void setDefaultKey(String label) throws CMSKeyDatabaseException {
    throw refusals.of(Refusals.DEFAULT_KEY);
  }

  @Override
  public void setTrusted(String label, boolean trusted) throws CMSKeyDatabaseException {
    throw refusals.of(Refusals.TRUST);
  }

  @Override
  public synchronized void close() {
    held.close();
    secondaryHeld.close();
  }

  @Override
  public String toString() {
    return "CryptographicToken[" + name + "]";
  }

  /** The password as the native methods take it. */
  String password() {
    return held.password();
  }

  synchronized String secondaryFile() {
    return secondaryFile;
  }

  synchronized String secondaryPassword() {
    return secondaryHeld.password();
  }

  private void importCertificate(
      String label, byte[] certificate, int keyLength, byte[] privateKey)
      throws CMSKeyDatabaseException {
    answers.check(
        c_ImportCertificate(
            module, tokenLabel, password(), secondaryFile(), secondaryPassword(),
            requireNonNull(label), certificate.length, certificate, keyLength, privateKey),
        label);
  }

  private void listLabels() throws CMSKeyDatabaseException {
    personalLabels.clear();
    signerLabels.clear();
    requestLabels.clear();
    answers.check(c_BuildKeyLabelList(module, tokenLabel, password()));
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

  static native int c_GetCryptoTokenLabelList(String moduleName);

  native boolean c_IsPasswordRequired(String moduleName, String tokenLabel);

  native int c_ChangeKeyDbPwd(
      String moduleName, String tokenLabel, String oldPassword, String newPassword);

  // Entries.

  native int c_BuildKeyLabelList(String moduleName, String tokenLabel, String tokenPassword);

  native KeyItem c_GetKeyItemByLabel(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      boolean isRequestKey);

  native int c_DeleteKeyItemByLabel(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      boolean isRequestKey);

  // Certificates.

  native int c_ReceivePersonalCertificate(
      String moduleName, String tokenLabel, String tokenPassword, String secondaryKeyDbFileName,
      String secondaryKeyDbPassword, String certFileName, boolean isBase64);

  native int c_ImportCertificate(
      String moduleName, String tokenLabel, String tokenPassword, String secondaryKeyDbFileName,
      String secondaryKeyDbPassword, String keyLabel, int certLength, byte[] certificate,
      int keyLength, byte[] privateKey);

  native int c_AddSignerCertificate(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      String certFileName, boolean isBase64);

  native int c_ExtractCertificate(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      String certFileName, boolean isBase64);

  // New keys and requests.

  native int c_CreatePersonalCertificateRequest(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel, int keySize,
      DNItem subject, int signatureAlgorithm, String certReqFileName);

  native int c_ImportPersonalCertificateRequest(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      int requestLength, byte[] request, int keyLength, byte[] privateKey);

  native int c_RecreatePersonalCertificateRequest(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      int signatureAlgorithm, String certReqFileName);

  native int c_ExtractPersonalCertificateRequest(
      String moduleName, String tokenLabel, String tokenPassword, String keyLabel,
      String certReqFileName);

  native int c_CreateSelfSignedCertificate(
      String moduleName, String tokenLabel, String tokenPassword, int version, String keyLabel,
      int keySize, DNItem subject, int validityDays, int signatureAlgorithm);

  // Renewal.

  native boolean c_IsPersonalCertificateRenewal(
      String moduleName, String tokenLabel, String tokenPassword, int certLength,
      byte[] certificate);

  native int c_RenewPersonalCertificate(
      String moduleName, String tokenLabel, String tokenPassword, int certLength,
      byte[] certificate);
}
