package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import com.nelo.zel.vosmar.internal.Answers;
import com.nelo.zel.vosmar.internal.PasswordHolder;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * A certificate store of the current user, such as {@code CurrentUser/My}: certificates with their
 * private keys, and the certificates of signers, each under a label.
 *
 * <p>A store is named by its cryptographic service provider (CSP); {@link #list} tells the names.
 * Its certificates are trusted for the place where they lie, not for marks.
 *
 * <p>The library looks for its native methods in this class only; the {@link Certificates} of a
 * store call those of their subject.
 */
public final class MSCertificateStore implements EntryStore {
  // Filled by the native method while the stores are listed.
  private static final List<String> CSP_NAMES = new ArrayList<>();

  final String cspName;
  final Answers<CMSKeyDatabaseException> answers;
  final Refusals refusals;
  private final PasswordHolder held;

  // Filled by the native method while the labels are listed.
  private final List<String> labels = new ArrayList<>();
  private final List<String> personalLabels = new ArrayList<>();
  private final List<String> signerLabels = new ArrayList<>();

  private MSCertificateStore(String cspName, char[] password) {
    this.cspName = requireNonNull(cspName);
    answers = new Answers<>(cspName, CMSKeyDatabaseException::new);
    refusals = new Refusals(answers, ResultCode.UNSUPPORTED_OPTION);
    held = new PasswordHolder(cspName, password);
  }

  /**
   * Lists the stores.
   *
   * @return their names
   * @throws CMSKeyDatabaseException when they cannot be listed
   */
  public static List<String> list() throws CMSKeyDatabaseException {
    KMSystem.start();
    synchronized (CSP_NAMES) {
      CSP_NAMES.clear();
      int code = c_GetCSPNameList();
      if (code != 0) {
        throw new CMSKeyDatabaseException(code, "certificate stores");
      }
      return List.copyOf(CSP_NAMES);
    }
  }

  /**
   * Opens a store to see that it is there and can be used.
   *
   * @param cspName its name
   * @param password its password, or null for none, which is what the stores of .NET have
   * @return the store
   * @throws CMSKeyDatabaseException with
   *     {@link ResultCode#CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED} when the store has no password
   *     and one is given
   */
  public static MSCertificateStore open(String cspName, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    MSCertificateStore store = new MSCertificateStore(cspName, password);
    try {
      store.labels();
    } catch (CMSKeyDatabaseException unusable) {
      store.close();
      throw unusable;
    }
    return store;
  }

  @Override
  public Certificates certificates() {
    return new CertificateStoreCertificates(this);
  }

  @Override
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    listLabels();
    return new Labels(List.copyOf(labels), List.of());
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
        c_GetKeyItemByLabel(cspName, password(), requireNonNull(label)),
        label,
        () -> labels().keys());
  }

  @Override
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    throw noRequest(label);
  }

  @Override
  public Optional<KeyItem> defaultKey() {
    return Optional.empty();
  }

  @Override
  public List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    return List.of(
        answers.found(
            c_GetKeyItemListByLabel(cspName, password(), requireNonNull(label)),
            label,
            () -> labels().keys()));
  }

  @Override
  public List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    return answers.all(
        c_GetKeyItemsByPublicKey(
            cspName, password(), subjectPublicKeyInfo.length, subjectPublicKeyInfo),
        () -> labels().keys());
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
    throw refusals.of(Refusals.REQUESTS);
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyItemByLabel(cspName, password(), requireNonNull(label)), label);
  }

  @Override
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    throw noRequest(label);
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
  public void useSecondaryKeyDatabase(Path file, char[] itsPassword)
      throws CMSKeyDatabaseException {
    throw refusals.of(Refusals.SECONDARY);
  }

  @Override
  public void close() {
    held.close();
  }

  @Override
  public String toString() {
    return "MSCertificateStore[" + cspName + "]";
  }

  /** The password as the native methods take it. */
  String password() {
    return held.password();
  }

  private CMSKeyDatabaseException noRequest(String label) {
    return answers.failure(ResultCode.KEY_GET_BY_LABEL.code(), requireNonNull(label));
  }

  private void importCertificate(
      String label, byte[] certificate, int keyLength, byte[] privateKey)
      throws CMSKeyDatabaseException {
    answers.check(
        c_ImportCertificate(
            cspName, password(), requireNonNull(label), certificate.length, certificate, keyLength,
            privateKey),
        label);
  }

  private void listLabels() throws CMSKeyDatabaseException {
    labels.clear();
    personalLabels.clear();
    signerLabels.clear();
    answers.check(c_BuildKeyLabelList(cspName, password()));
  }

  /** Called by the native library for each store while the stores are listed. */
  private static void addCSPName(String name) {
    CSP_NAMES.add(name);
  }

  /** Called by the native library for each entry while the labels are listed. */
  private void addKeyLabel(String label) {
    labels.add(label);
  }

  /** Called by the native library, after the call for every entry, for one with a private key. */
  private void addPersonalKeyLabel(String label) {
    personalLabels.add(label);
  }

  /**
   * Called by the native library, after the call for every entry, for one without a private key.
   */
  private void addSignerKeyLabel(String label) {
    signerLabels.add(label);
  }

  // Names and labels.

  static native int c_GetCSPNameList();

  native int c_BuildKeyLabelList(String cspName, String password);

  // Entries.

  native KeyItem c_GetKeyItemByLabel(String cspName, String password, String keyLabel);

  native KeyItem[] c_GetKeyItemListByLabel(String cspName, String password, String keyLabel);

  native KeyItem[] c_GetKeyItemsByPublicKey(
      String cspName, String password, int publicKeyLength, byte[] publicKey);

  native int c_DeleteKeyItemByLabel(String cspName, String password, String keyLabel);

  // Certificates.

  native int c_ImportCertificate(
      String cspName, String password, String keyLabel, int certLength, byte[] certData,
      int keyLength, byte[] keyData);

  native int c_AddSignerCertificate(
      String cspName, String password, String keyLabel, String certFileName, boolean isBase64);

  native int c_CreateNewSelfSignedCertificate(
      String cspName, String password, int version, String keyLabel, int keySize, DNItem subject,
      int validityDays, int sigAlg, int extLength, byte[] extData);
}
