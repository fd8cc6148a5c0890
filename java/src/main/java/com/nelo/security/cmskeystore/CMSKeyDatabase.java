package com.nelo.security.cmskeystore;

import static java.util.Objects.requireNonNull;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.KMSystem;
import com.nelo.zel.vosmar.basic.Labels;
import com.nelo.zel.vosmar.basic.ResultCode;
import com.nelo.zel.vosmar.internal.Answers;
import com.nelo.zel.vosmar.internal.PasswordHolder;
import java.nio.file.Path;
import java.time.Duration;
import java.util.ArrayList;
import java.util.List;

/**
 * A key database file: keys with their certificates, and certificates alone, each under a label.
 *
 * <p>An object of this class remembers a file and its password. It keeps nothing open: each
 * operation opens the file, works, and closes it. {@link #close()} wipes the password. Passwords
 * are handed to the native methods as strings, so that each operation leaves a copy in the heap
 * until the garbage collector overwrites it.
 *
 * <p>Pending requests are listed and deleted, but there is no item to read one into.
 *
 * <p>An argument is null only where its description says so: the native methods do not look, and a
 * missing text would end the virtual machine. Public methods do, and throw a {@link
 * NullPointerException}.
 *
 * <p>Some native methods answer only yes or no, or an object or nothing. When such a method fails,
 * the database is looked at again to learn the reason, so the reason told may be of a moment later.
 */
public final class CMSKeyDatabase implements AutoCloseable {
  private final String file;
  private final Answers<CMSKeyDatabaseException> answers;
  private final PasswordHolder held;

  // Filled by the native method while the labels are listed.
  private final List<String> keyLabels = new ArrayList<>();
  private final List<String> requestLabels = new ArrayList<>();

  private CMSKeyDatabase(Path file, char[] password) {
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
   *     password, {@link ResultCode#KEYDB_NOT_EXIST} for a missing file
   */
  public static CMSKeyDatabase open(Path file, char[] password) throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    return db.openedUnless(db.c_OpenKeyDb(db.file, db.password()));
  }

  /**
   * Changes the password of a key database. A password past its lifetime still serves as the old
   * one.
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
   * Starts the library once more, with its trace when wanted. The trace holds secrets in the clear.
   *
   * @param traceOn whether the library traces to {@code jnitrace} in the working directory
   * @throws CMSKeyDatabaseException when the library cannot be started
   */
  public void restartLibrary(boolean traceOn) throws CMSKeyDatabaseException {
    answers.check(c_CMSInit(traceOn));
  }

  /**
   * Writes the password to the stash file beside the database.
   *
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_WRITE} when the stash file cannot
   *     be written
   */
  public void stashPassword() throws CMSKeyDatabaseException {
    if (!c_StashKeyDbPwd(file, password())) {
      throw answers.passwordUnstashed(c_OpenKeyDb(file, password()));
    }
  }

  /**
   * Lists the labels.
   *
   * @return the labels of keys and of pending requests
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    keyLabels.clear();
    requestLabels.clear();
    answers.check(c_BuildKeyLabelList(file, password()));
    return new Labels(List.copyOf(keyLabels), List.copyOf(requestLabels));
  }

  /**
   * Reads a key or certificate.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(file, password(), requireNonNull(label), false),
        label,
        () -> labels().keys());
  }

  /**
   * Reads all entries that share a label.
   *
   * @param label the label
   * @return the entries, one at least
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  public List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    return List.of(
        answers.found(
            c_GetKeyItemListByLabel(file, password(), requireNonNull(label)),
            label,
            () -> labels().keys()));
  }

  /**
   * Reads all entries of a public key.
   *
   * @param subjectPublicKeyInfo the key as a DER SubjectPublicKeyInfo
   * @return the entries; empty when there are none
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    return answers.all(
        c_GetKeyItemsByPublicKey(
            file, password(), subjectPublicKeyInfo.length, subjectPublicKeyInfo),
        () -> labels().keys());
  }

  /**
   * Whether an entry has a private key.
   *
   * @param label its label
   * @return false for a certificate alone
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  public boolean isPrivateKeyPresent(String label) throws CMSKeyDatabaseException {
    return answers.holdsFor(
        c_IsPrivateKeyPresent(file, password(), requireNonNull(label)),
        label,
        () -> labels().keys());
  }

  /**
   * Adds a certificate, with its private key or alone.
   *
   * @param label its label
   * @param certificate a DER certificate
   * @param privateKey its key: PKCS&nbsp;#8, EncryptedPrivateKeyInfo under the password of this
   *     database, or a traditional RSA or EC key, in DER; null for none
   * @param trusted whether chains may end at the certificate
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken, with {@link ResultCode#VALIDATION_KEY_PAIR} when key and certificate do not
   *     belong together
   */
  public void insertKey(
      String label, byte[] certificate, byte[] privateKey, boolean trusted, boolean makeDefault)
      throws CMSKeyDatabaseException {
    int keyLength = privateKey == null ? 0 : privateKey.length;
    answers.check(
        c_InsertKey(
            file, password(), requireNonNull(label), certificate.length, certificate, keyLength,
            privateKey, trusted, makeDefault),
        label);
  }

  /**
   * Deletes a key or certificate for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyByLabel(file, password(), requireNonNull(label), false), label);
  }

  /**
   * Deletes a pending request and its key for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyByLabel(file, password(), requireNonNull(label), true), label);
  }

  /**
   * Encrypts a private key, without storing it.
   *
   * @param privateKey a DER PrivateKeyInfo (PKCS&nbsp;#8)
   * @param itsPassword the password to encrypt it under
   * @return the encrypted key
   * @throws CMSKeyDatabaseException with {@link ResultCode#CRYPTO} for every failure: its reason
   *     does not reach Java
   */
  public EncryptedPrivateKeyInfoItem encryptPrivateKey(byte[] privateKey, char[] itsPassword)
      throws CMSKeyDatabaseException {
    return answers.given(
        c_EncryptPrivateKey(privateKey.length, privateKey, new String(itsPassword)),
        ResultCode.CRYPTO.code(),
        "encrypting a private key");
  }

  /**
   * Decrypts a private key.
   *
   * @param encryptedKey a DER EncryptedPrivateKeyInfo (PKCS&nbsp;#8)
   * @param itsPassword the password that it is encrypted under
   * @return the key, which the caller closes
   * @throws CMSKeyDatabaseException with {@link ResultCode#CRYPTO} for every failure, a wrong
   *     password too: its reason does not reach Java
   */
  public PrivateKeyInfoItem decryptPrivateKey(byte[] encryptedKey, char[] itsPassword)
      throws CMSKeyDatabaseException {
    return answers.given(
        c_DecryptPrivateKey(encryptedKey.length, encryptedKey, new String(itsPassword)),
        ResultCode.CRYPTO.code(),
        "decrypting a private key");
  }

  /** Wipes the password. The database can be used no longer through this object. */
  @Override
  public void close() {
    held.close();
  }

  @Override
  public String toString() {
    return "CMSKeyDatabase[" + file + "]";
  }

  private String password() {
    return held.password();
  }

  /** This database, unless the code tells a failure; then the password is wiped. */
  private CMSKeyDatabase openedUnless(int code) throws CMSKeyDatabaseException {
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

  // The library, and the lifecycle of a database. Lifetimes are in milliseconds; 0 is no expiry.

  private native int c_CMSInit(boolean traceOn);

  private native int c_CreateNewKeyDb(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_CreateNewKeyDbFIPS(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_OpenKeyDb(String keyDbFileName, String keyDbPwd);

  private native boolean c_ChangeKeyDbPwd(
      String keyDbFileName, String oldPwd, String newPwd, long expireTime);

  private native boolean c_StashKeyDbPwd(String keyDbFileName, String keyDbPwd);

  // Queries.

  private native int c_BuildKeyLabelList(String keyDbFileName, String keyDbPwd);

  private native KeyItem c_GetKeyItemByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean neverRead);

  private native KeyItem[] c_GetKeyItemListByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  private native KeyItem[] c_GetKeyItemsByPublicKey(
      String keyDbFileName, String keyDbPwd, int publicKeyLength, byte[] publicKey);

  private native boolean c_IsPrivateKeyPresent(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  // Maintenance.

  private native int c_InsertKey(
      String keyDbFileName, String keyDbPwd, String keyLabel, int certLength, byte[] certData,
      int keyLength, byte[] keyData, boolean trusted, boolean makeDefault);

  private native int c_DeleteKeyByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  // Private keys outside a database.

  private native EncryptedPrivateKeyInfoItem c_EncryptPrivateKey(
      int length, byte[] privateKey, String password);

  private native PrivateKeyInfoItem c_DecryptPrivateKey(
      int length, byte[] encryptedKey, String password);
}
