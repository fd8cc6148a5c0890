package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import com.nelo.zel.vosmar.internal.Answers;
import com.nelo.zel.vosmar.internal.PasswordHolder;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Duration;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * A key database file: keys with their certificates, certificates alone, and pending requests, each
 * under a label.
 *
 * <p>The library looks for its native methods in this class only, so they stand here for the whole
 * package: the {@link Certificates} of a key database, {@link PfxFile}, {@link KeyRingFile}, {@link
 * Pkcs7File} and {@link PrivateKeyEncryption} call those of their subjects.
 */
public final class CMSKeyDatabase implements EntryStore {
  /** The library takes the stash file where the password is empty; no database has an empty one. */
  private static final char[] FROM_STASH = {};

  /** The name of the file, as the native methods take it. */
  final String file;

  final Answers<CMSKeyDatabaseException> answers;
  private final PasswordHolder held;

  // Filled by the native method while the labels are listed.
  private final List<String> keyLabels = new ArrayList<>();
  private final List<String> requestLabels = new ArrayList<>();

  /** Remembers a file without touching it. */
  CMSKeyDatabase(Path file, char[] password) {
    this.file = file.toString();
    answers = new Answers<>(this.file, CMSKeyDatabaseException::new);
    held = new PasswordHolder(this.file, requireNonNull(password));
  }

  /**
   * Creates a key database.
   *
   * @param file the file, which does not exist yet
   * @param password 6 characters at least
   * @param passwordLifetime how long the password can be used; zero for ever
   * @return the new database
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_ALREADY_EXISTS} when the file
   *     exists
   */
  public static CMSKeyDatabase create(Path file, char[] password, Duration passwordLifetime)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code = db.c_CreateNewKeyDb(db.file, db.password(), passwordLifetime.toMillis());
    return db.openedUnless(code);
  }

  /**
   * Creates a key database that accepts approved algorithms and key sizes only.
   *
   * @param file the file, which does not exist yet
   * @param password 14 characters at least
   * @param passwordLifetime how long the password can be used; zero for ever
   * @return the new database
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_ALREADY_EXISTS} when the file
   *     exists
   */
  public static CMSKeyDatabase createFips(Path file, char[] password, Duration passwordLifetime)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code = db.c_CreateNewKeyDbFIPS(db.file, db.password(), passwordLifetime.toMillis());
    return db.openedUnless(code);
  }

  /**
   * Opens a key database to see that the password fits.
   *
   * @param file the file
   * @param password its password
   * @return the database
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_INVALID_PASSWORD} for a wrong
   *     password, {@link ResultCode#KEYDB_NOT_EXIST} for a missing file,
   *     {@link ResultCode#DATABASE_INVALID_FILE_TYPE} for a file that is no key database,
   *     {@link ResultCode#DATABASE_CORRUPTION} for a damaged one,
   *     {@link ResultCode#PASSWORD_EXPIRATION_TIME} for a password past its lifetime
   */
  public static CMSKeyDatabase open(Path file, char[] password) throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    return db.openedUnless(db.c_OpenKeyDb(db.file, db.password()));
  }

  /**
   * Opens a key database with the password of its stash file.
   *
   * @param file the file
   * @return the database
   * @throws CMSKeyDatabaseException as {@link #open} does, and with
   *     {@link ResultCode#PWDFILE_NOT_EXIST} without a stash file
   */
  public static CMSKeyDatabase openWithStash(Path file) throws CMSKeyDatabaseException {
    return open(file, FROM_STASH);
  }

  /**
   * Changes the password of a key database. A password past its lifetime still serves as the old
   * one. A stash file is left as it is.
   *
   * @param file the file
   * @param oldPassword its password
   * @param newPassword its password from now on
   * @param lifetime how long the new password can be used; zero for ever
   * @throws CMSKeyDatabaseException as {@link #open} does for the old password, and with
   *     {@link ResultCode#NEW_PASSWORD} when the new one is refused
   */
  public static void changePassword(
      Path file, char[] oldPassword, char[] newPassword, Duration lifetime)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase db = new CMSKeyDatabase(file, oldPassword)) {
      boolean changed =
          db.c_ChangeKeyDbPwd(
              db.file, db.password(), new String(newPassword), lifetime.toMillis());
      if (!changed) {
        throw db.answers.passwordUnchanged(db.c_OpenKeyDb(db.file, db.password()));
      }
    }
  }

  /**
   * Whether a key database has to be opened with a password.
   *
   * @param file the file
   * @return false when a usable stash file stands beside it
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEYDB_NOT_EXIST} when the file does not
   *     exist
   */
  public static boolean isPasswordRequired(Path file) throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase db = new CMSKeyDatabase(file, FROM_STASH)) {
      boolean required = db.c_IsPasswordRequired(db.file);
      if (!required && !Files.exists(file)) {
        throw db.answers.failure(ResultCode.KEYDB_NOT_EXIST.code());
      }
      return required;
    }
  }

  /**
   * Writes the password to the stash file beside the database, so that programs that may read it
   * can open the database without a person.
   *
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_WRITE} when the stash file cannot
   *     be written
   */
  public void stashPassword() throws CMSKeyDatabaseException {
    if (!c_StashKeyDbPwd(file, password())) {
      throw answers.passwordUnstashed(c_OpenKeyDb(file, password()));
    }
  }

  @Override
  public Certificates certificates() {
    return new KeyDatabaseCertificates(this);
  }

  @Override
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    keyLabels.clear();
    requestLabels.clear();
    answers.check(c_BuildKeyLabelList(file, password()));
    return new Labels(List.copyOf(keyLabels), List.copyOf(requestLabels));
  }

  @Override
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(file, password(), requireNonNull(label), false),
        label,
        () -> labels().keys());
  }

  @Override
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(file, password(), requireNonNull(label), true),
        label,
        () -> labels().requests());
  }

  @Override
  public Optional<KeyItem> defaultKey() throws CMSKeyDatabaseException {
    KeyItem item = c_GetDefaultKeyItem(file, password());
    if (item == null) {
      labels();
    }
    return Optional.ofNullable(item);
  }

  @Override
  public boolean isPrivateKeyPresent(String label) throws CMSKeyDatabaseException {
    return answers.holdsFor(
        c_IsPrivateKeyPresent(file, password(), requireNonNull(label)),
        label,
        () -> labels().keys());
  }

  @Override
  public List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    return List.of(
        answers.found(
            c_GetKeyItemListByLabel(file, password(), requireNonNull(label)),
            label,
            () -> labels().keys()));
  }

  @Override
  public List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    return answers.all(
        c_GetKeyItemsByPublicKey(
            file, password(), subjectPublicKeyInfo.length, subjectPublicKeyInfo),
        () -> labels().keys());
  }

  @Override
  public void insertCertificate(String label, byte[] certificate, boolean trusted)
      throws CMSKeyDatabaseException {
    answers.check(
        c_InsertKey(
            file, password(), requireNonNull(label), certificate.length, certificate, 0, null,
            trusted, false),
        label);
  }

  @Override
  public void insertKey(
      String label, byte[] certificate, byte[] privateKey, boolean trusted, boolean makeDefault)
      throws CMSKeyDatabaseException {
    answers.check(
        c_InsertKey(
            file, password(), requireNonNull(label), certificate.length, certificate,
            privateKey.length, privateKey, trusted, makeDefault),
        label);
  }

  @Override
  public void insertRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException {
    answers.check(
        c_InsertReqKey(
            file, password(), requireNonNull(label), request.length, request, privateKey.length,
            privateKey),
        label);
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyByLabel(file, password(), requireNonNull(label), false), label);
  }

  @Override
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyByLabel(file, password(), requireNonNull(label), true), label);
  }

  @Override
  public void setDefaultKey(String label) throws CMSKeyDatabaseException {
    answers.check(c_SetDefaultKey(file, password(), requireNonNull(label)), label);
  }

  @Override
  public void setTrusted(String label, boolean trusted) throws CMSKeyDatabaseException {
    answers.check(c_SetKeyTrust(file, password(), requireNonNull(label), trusted), label);
  }

  @Override
  public void useSecondaryKeyDatabase(Path secondary, char[] itsPassword)
      throws CMSKeyDatabaseException {
    throw new Refusals(answers, ResultCode.UNSUPPORTED_OPTION).of(Refusals.SECONDARY);
  }

  @Override
  public void close() {
    held.close();
  }

  @Override
  public String toString() {
    return "CMSKeyDatabase[" + file + "]";
  }

  /** The password as the native methods take it. */
  String password() {
    return held.password();
  }

  /** This database, unless the code tells a failure; then the password is wiped. */
  CMSKeyDatabase openedUnless(int code) throws CMSKeyDatabaseException {
    if (code != 0) {
      close();
    }
    answers.check(code);
    return this;
  }

  /** Called by the native library for each label of a key while the labels are listed. */
  private void addKeyLabel(String label) {
    keyLabels.add(label);
  }

  /** Called by the native library for each label of a request while the labels are listed. */
  private void addReqKeyLabel(String label) {
    requestLabels.add(label);
  }

  // Lifecycle. Lifetimes are in milliseconds; 0 is no expiry.

  native int c_CreateNewKeyDb(String keyDbFileName, String keyDbPwd, long expireTime);

  native int c_CreateNewKeyDbFIPS(String keyDbFileName, String keyDbPwd, long expireTime);

  native int c_OpenKeyDb(String keyDbFileName, String keyDbPwd);

  native boolean c_ChangeKeyDbPwd(
      String keyDbFileName, String oldPwd, String newPwd, long expireTime);

  native boolean c_StashKeyDbPwd(String keyDbFileName, String keyDbPwd);

  native boolean c_IsPasswordRequired(String keyDbFileName);

  // Queries.

  native int c_BuildKeyLabelList(String keyDbFileName, String keyDbPwd);

  native KeyItem c_GetKeyItemByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  native KeyItem[] c_GetKeyItemListByLabel(String keyDbFileName, String keyDbPwd, String keyLabel);

  native KeyItem[] c_GetKeyItemsByPublicKey(
      String keyDbFileName, String keyDbPwd, int publicKeyLength, byte[] publicKey);

  native KeyItem c_GetDefaultKeyItem(String keyDbFileName, String keyDbPwd);

  native boolean c_IsPrivateKeyPresent(String keyDbFileName, String keyDbPwd, String keyLabel);

  // Maintenance.

  native int c_InsertKey(
      String keyDbFileName, String keyDbPwd, String keyLabel, int certLength, byte[] certData,
      int keyLength, byte[] keyData, boolean trusted, boolean makeDefault);

  native int c_InsertReqKey(
      String keyDbFileName, String keyDbPwd, String keyLabel, int requestLength, byte[] requestData,
      int keyLength, byte[] keyData);

  native int c_DeleteKeyByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  native int c_SetDefaultKey(String keyDbFileName, String keyDbPwd, String keyLabel);

  native int c_SetKeyTrust(String keyDbFileName, String keyDbPwd, String keyLabel, boolean trusted);

  // New certificates and requests.

  native int c_CreateNewSelfSignedCertificate(
      String keyDbFileName, String keyDbPwd, int version, String keyLabel, boolean makeDefault,
      int keySize, DNItem subject, int validityDays, String certFileName, boolean isBase64);

  native int c_CreateNewSelfSignedCertificateSigExt(
      String keyDbFileName, String keyDbPwd, int version, String keyLabel, boolean makeDefault,
      int keySize, DNItem subject, int validityDays, int sigAlg, int extLength, byte[] extData,
      String certFileName, boolean isBase64);

  native int c_CreateNewCertRequest(
      String keyDbFileName, String keyDbPwd, String keyLabel, int keySize, DNItem subject,
      String certReqFileName, boolean createNew);

  native int c_CreateNewCertRequestSigExt(
      String keyDbFileName, String keyDbPwd, String keyLabel, int keySize, DNItem subject,
      int sigAlg, int extLength, byte[] extData, String certReqFileName, boolean createNew);

  native int c_IssueCertificate(
      String keyDbFileName, String keyDbPwd, String issuerKeyLabel, int version,
      String serialNumber, int validityDays, String certReqFileName, String certFileName,
      boolean isBase64);

  native int c_IssueCertificateSig(
      String keyDbFileName, String keyDbPwd, String issuerKeyLabel, int version,
      String serialNumber, int validityDays, int sigAlg, String certReqFileName,
      String certFileName, boolean isBase64);

  // Private keys outside a database.

  native EncryptedPrivateKeyInfoItem c_EncryptPrivateKey(
      int length, byte[] privateKey, String password);

  native PrivateKeyInfoItem c_DecryptPrivateKey(int length, byte[] encryptedKey, String password);

  // Import and export.

  native int c_ExportToPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd, String[] labels);

  native int c_ImportFromPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd);

  native int c_ReceiveCert(
      String keyDbFileName, String keyDbPwd, String certFileName, boolean isBase64,
      boolean makeDefault);

  native int c_AddCaCert(
      String keyDbFileName, String keyDbPwd, String keyLabel, String certFileName,
      boolean isBase64);

  native int c_ExtractCert(
      String keyDbFileName, String keyDbPwd, String keyLabel, String certFileName,
      boolean isBase64);

  native int c_ExtractCertReq(
      String keyDbFileName, String keyDbPwd, String keyLabel, String certReqFileName);

  native int c_ExtractCertReqSig(
      String keyDbFileName, String keyDbPwd, String keyLabel, int sigAlg, String certReqFileName);

  native CertificateItem[] c_ExtractCertFromPKCS7Data(String certFileName, boolean isBase64);

  // Conversion, renewal and validation.

  native int c_Kyr2Kdb(String kyrFileName, String kyrPwd, String keyDbFileName, String keyDbPwd);

  native int c_Kdb2Kyr(String keyDbFileName, String keyDbPwd, String kyrFileName, String kyrPwd);

  native boolean c_CheckCertAsRenewal(
      String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  native int c_RenewCert(String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  native boolean c_ValidateCertificateChain(
      String keyDbFileName, String keyDbPwd, byte[] certData, int certLength);
}
