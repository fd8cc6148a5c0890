package com.nelo.zel.vosmar.basic;

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
 * <p>An object of this class remembers a file and its password. It keeps nothing open: each operation
 * opens the file, works, and closes it, so that several programs can use one database. Operations may
 * be called from any thread. {@link #close()} wipes the password.
 *
 * <p>Passwords are taken as {@code char[]}, which the caller can wipe; the native methods take them as
 * strings, so that each operation leaves a copy in the heap until the garbage collector overwrites it.
 *
 * <p>Some native methods answer only yes or no, or an object or nothing. When such a method fails, the
 * database is looked at again to learn the reason, so the reason told may be of a moment later.
 */
public final class CMSKeyDatabase extends KeyDatabaseFile {
  // Codes for failures whose code the native methods keep to themselves.
  private static final int BAD_ASN1 = 2;
  private static final int CANNOT_READ_ENTRY = 12;
  private static final int CRYPTOGRAPHY_FAILED = 32;
  private static final int NEW_PASSWORD_REFUSED = 69;
  private static final int OLD_PASSWORD_EXPIRED = 70;
  private static final int CANNOT_READ_FILE = 87;
  private static final int CANNOT_WRITE_FILE = 91;
  private static final int NO_SUCH_DATABASE = 101;
  private static final int NO_SUCH_LABEL = 117;
  private static final int WRONG_PASSWORD_OR_DAMAGED = 120;

  /** The library takes the stash file where the password is empty; no database has an empty one. */
  private static final char[] FROM_STASH = {};

  // Filled by the native method while the labels are listed.
  private final List<String> keyLabels = new ArrayList<>();
  private final List<String> requestLabels = new ArrayList<>();

  private CMSKeyDatabase(Path file, char[] password) {
    super(file, password);
  }

  /**
   * The labels of a key database, in the order of the database.
   *
   * @param keys those of keys and certificates
   * @param requests those of pending requests
   */
  public record Labels(List<String> keys, List<String> requests) {}

  /**
   * Creates a key database.
   *
   * @param file the file, which does not exist yet
   * @param password 6 characters at least
   * @param passwordLifetime how long the password can be used; zero for ever
   * @return the new database
   * @throws CMSKeyDatabaseException with code 9 when the file exists
   */
  public static CMSKeyDatabase create(Path file, char[] password, Duration passwordLifetime)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code = db.c_CreateNewKeyDb(db.file, db.password(), passwordLifetime.toMillis());
    return db.unless(code);
  }

  /**
   * Creates a key database that accepts approved algorithms and key sizes only.
   *
   * @param file the file, which does not exist yet
   * @param password 14 characters at least
   * @param passwordLifetime how long the password can be used; zero for ever
   * @return the new database
   * @throws CMSKeyDatabaseException with code 9 when the file exists
   */
  public static CMSKeyDatabase createFips(Path file, char[] password, Duration passwordLifetime)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code = db.c_CreateNewKeyDbFIPS(db.file, db.password(), passwordLifetime.toMillis());
    return db.unless(code);
  }

  /**
   * Opens a key database to see that the password fits.
   *
   * @param file the file
   * @param password its password
   * @return the database
   * @throws CMSKeyDatabaseException with code 16 for a wrong password, 101 for a missing file, 17 for a
   *     file that is no key database, 18 for a damaged one, 70 for a password past its lifetime
   */
  public static CMSKeyDatabase open(Path file, char[] password) throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    return db.unless(db.c_OpenKeyDb(db.file, db.password()));
  }

  /**
   * Opens a key database with the password of its stash file.
   *
   * @param file the file
   * @return the database
   * @throws CMSKeyDatabaseException as {@link #open} does, and with code 103 without a stash file
   */
  public static CMSKeyDatabase openWithStash(Path file) throws CMSKeyDatabaseException {
    return open(file, FROM_STASH);
  }

  /**
   * Changes the password of a key database. A password past its lifetime still serves as the old one.
   * A stash file is left as it is.
   *
   * @param file the file
   * @param oldPassword its password
   * @param newPassword its password from now on
   * @param lifetime how long the new password can be used; zero for ever
   * @throws CMSKeyDatabaseException as {@link #open} does for the old password, and with code 69 when
   *     the new one is refused
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
        int code = db.c_OpenKeyDb(db.file, db.password());
        boolean oldPasswordFits = code == 0 || code == OLD_PASSWORD_EXPIRED;
        throw db.failure(oldPasswordFits ? NEW_PASSWORD_REFUSED : code);
      }
    }
  }

  /**
   * Whether a key database has to be opened with a password.
   *
   * @param file the file
   * @return false when a usable stash file stands beside it
   * @throws CMSKeyDatabaseException with code 101 when the file does not exist
   */
  public static boolean isPasswordRequired(Path file) throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase db = new CMSKeyDatabase(file, FROM_STASH)) {
      boolean required = db.c_IsPasswordRequired(db.file);
      if (!required && !Files.exists(file)) {
        throw db.failure(NO_SUCH_DATABASE);
      }
      return required;
    }
  }

  /**
   * Writes the password to the stash file beside the database, so that programs that may read it can
   * open the database without a person.
   *
   * @throws CMSKeyDatabaseException with code 91 when the stash file cannot be written
   */
  public void stashPassword() throws CMSKeyDatabaseException {
    if (!c_StashKeyDbPwd(file, password())) {
      check(c_OpenKeyDb(file, password()));
      throw failure(CANNOT_WRITE_FILE);
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
    check(c_BuildKeyLabelList(file, password()));
    return new Labels(List.copyOf(keyLabels), List.copyOf(requestLabels));
  }

  /**
   * Reads a key or certificate.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    KeyItem item = c_GetKeyItemByLabel(file, password(), label, false);
    if (item == null) {
      throw noEntry(label, labels().keys());
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
    KeyItem item = c_GetKeyItemByLabel(file, password(), label, true);
    if (item == null) {
      throw noEntry(label, labels().requests());
    }
    return item;
  }

  /**
   * Reads the default key.
   *
   * @return the entry, or nothing when the database has no default key
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public Optional<KeyItem> defaultKey() throws CMSKeyDatabaseException {
    KeyItem item = c_GetDefaultKeyItem(file, password());
    if (item == null) {
      labels();
    }
    return Optional.ofNullable(item);
  }

  /**
   * Whether an entry has a private key.
   *
   * @param label its label
   * @return false for a certificate alone
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public boolean isPrivateKeyPresent(String label) throws CMSKeyDatabaseException {
    boolean present = c_IsPrivateKeyPresent(file, password(), label);
    if (!present && !labels().keys().contains(label)) {
      throw noEntry(label, List.of());
    }
    return present;
  }

  /**
   * Reads all entries that share a label.
   *
   * @param label the label
   * @return the entries, one at least
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    KeyItem[] items = c_GetKeyItemListByLabel(file, password(), label);
    if (items == null) {
      throw noEntry(label, labels().keys());
    }
    return List.of(items);
  }

  /**
   * Reads all entries of a public key.
   *
   * @param subjectPublicKeyInfo the key as a DER SubjectPublicKeyInfo, which is what {@link
   *     java.security.PublicKey#getEncoded} gives
   * @return the entries; empty when there are none
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    KeyItem[] items =
        c_GetKeyItemsByPublicKey(
            file, password(), subjectPublicKeyInfo.length, subjectPublicKeyInfo);
    if (items == null) {
      labels();
      return List.of();
    }
    return List.of(items);
  }

  /**
   * Adds a certificate without private key.
   *
   * @param label its label
   * @param certificate a DER certificate
   * @param trusted whether chains may end at it
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   */
  public void insertCertificate(String label, byte[] certificate, boolean trusted)
      throws CMSKeyDatabaseException {
    check(
        c_InsertKey(
            file, password(), label, certificate.length, certificate, 0, null, trusted, false),
            label);
  }

  /**
   * Adds a key and its certificate.
   *
   * @param label its label
   * @param certificate a DER certificate
   * @param privateKey its key: PKCS&nbsp;#8, EncryptedPrivateKeyInfo under the password of this
   *     database, or a traditional RSA or EC key, in DER; the caller wipes it
   * @param trusted whether chains may end at the certificate
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with code 23 when the label is taken, with code 62 when key and
   *     certificate do not belong together
   */
  public void insertKey(
      String label, byte[] certificate, byte[] privateKey, boolean trusted, boolean makeDefault)
      throws CMSKeyDatabaseException {
    check(
        c_InsertKey(
            file, password(), label, certificate.length, certificate, privateKey.length, privateKey,
            trusted, makeDefault), label);
  }

  /**
   * Adds a pending request and its key.
   *
   * @param label its label
   * @param request a DER request
   * @param privateKey its key, as for {@link #insertKey}
   * @throws CMSKeyDatabaseException with code 23 when the label is taken, with code 62 when key and
   *     request do not belong together
   */
  public void insertRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException {
    check(
        c_InsertReqKey(
            file, password(), label, request.length, request, privateKey.length, privateKey),
            label);
  }

  /**
   * Deletes a key or certificate for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    check(c_DeleteKeyByLabel(file, password(), label, false), label);
  }

  /**
   * Deletes a pending request and its key for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    check(c_DeleteKeyByLabel(file, password(), label, true), label);
  }

  /**
   * Makes a key the default key.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public void setDefaultKey(String label) throws CMSKeyDatabaseException {
    check(c_SetDefaultKey(file, password(), label), label);
  }

  /**
   * Says whether chains may end at a certificate.
   *
   * @param label its label
   * @param trusted whether they may
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public void setTrusted(String label, boolean trusted) throws CMSKeyDatabaseException {
    check(c_SetKeyTrust(file, password(), label, trusted), label);
  }

  /**
   * Makes a key and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   */
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    int code;
    if (certificate.isPlain()) {
      code =
          c_CreateNewSelfSignedCertificate(
              file, password(), certificate.version(), certificate.label(),
              certificate.isDefaultKey(), certificate.keyType().selector(), certificate.subject(),
              certificate.validityDays(), certificate.fileName(), certificate.isBase64());
    } else {
      code =
          c_CreateNewSelfSignedCertificateSigExt(
              file, password(), certificate.version(), certificate.label(),
              certificate.isDefaultKey(), certificate.keyType().selector(), certificate.subject(),
              certificate.validityDays(), certificate.signatureAlgorithm().selector(),
              certificate.extensions().length, certificate.extensions(), certificate.fileName(),
              certificate.isBase64());
    }
    check(code, certificate.label());
  }

  /**
   * Makes a key and a request for a certificate, which both wait here for {@link #receiveCertificate}.
   *
   * @param request what it shall be like
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   */
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    int code;
    if (request.isPlain()) {
      code =
          c_CreateNewCertRequest(
              file, password(), request.label(), request.keyType().selector(), request.subject(),
              request.fileName(), true);
    } else {
      code =
          c_CreateNewCertRequestSigExt(
              file, password(), request.label(), request.keyType().selector(), request.subject(),
              request.signatureAlgorithm().selector(), request.extensions().length,
              request.extensions(), request.fileName(), true);
    }
    check(code, request.label());
  }

  /**
   * Issues a certificate for a request, signed by a key of this database.
   *
   * @param issue how it shall be issued
   * @throws CMSKeyDatabaseException with code 117 when no key has the issuer's label, with code 125 when
   *     the issuer may not issue
   */
  public void issueCertificate(CertificateIssue issue) throws CMSKeyDatabaseException {
    SignatureAlgorithm algorithm = issue.signatureAlgorithm();
    int code;
    if (algorithm == null) {
      code =
          c_IssueCertificate(
              file, password(), issue.issuerLabel(), issue.version(), issue.serialNumber(),
              issue.validityDays(), issue.requestFileName(), issue.certificateFileName(),
              issue.isBase64());
    } else {
      code =
          c_IssueCertificateSig(
              file, password(), issue.issuerLabel(), issue.version(), issue.serialNumber(),
              issue.validityDays(), algorithm.selector(), issue.requestFileName(),
              issue.certificateFileName(), issue.isBase64());
    }
    check(code, issue.issuerLabel());
  }

  /**
   * Takes in the certificate for a pending request. The request becomes a key of the same label.
   *
   * @param source a file with the certificate, or with a PKCS&nbsp;#7 bundle that has it
   * @param encoding the form of the file
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with code 108 when no request belongs to the certificate
   */
  public void receiveCertificate(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    check(
        c_ReceiveCert(file, password(), source.toString(), encoding.isBase64(), makeDefault),
        source);
  }

  /**
   * Adds the certificate of a certificate authority.
   *
   * @param label its label
   * @param source the file of the certificate
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with code 23 when the label is taken
   */
  public void addCaCertificate(String label, Path source, Encoding encoding)
      throws CMSKeyDatabaseException {
    check(c_AddCaCert(file, password(), label, source.toString(), encoding.isBase64()), label);
  }

  /**
   * Whether a certificate would renew one of this database: same subject and key, other certificate.
   *
   * @param certificate a DER certificate
   * @return true when {@link #renewCertificate} would take it
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    boolean renewal =
        c_CheckCertAsRenewal(file, password(), certificate.length, certificate);
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
    check(c_RenewCert(file, password(), certificate.length, certificate));
  }

  /**
   * Whether a certificate is valid now, with a chain of certificates of this database that ends at a
   * trusted one (RFC&nbsp;5280, section 6).
   *
   * @param certificate a DER certificate
   * @return false whatever is wrong with it
   * @throws CMSKeyDatabaseException when the database cannot be opened or is damaged
   */
  public boolean isValid(byte[] certificate) throws CMSKeyDatabaseException {
    boolean valid =
        c_ValidateCertificateChain(file, password(), certificate, certificate.length);
    if (!valid) {
      labels();
    }
    return valid;
  }

  /**
   * Writes a pending request to a file once more, in Base64.
   *
   * @param label its label
   * @param target the file
   * @throws CMSKeyDatabaseException with code 117 when no request has the label
   */
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    check(c_ExtractCertReq(file, password(), label, target.toString()), label);
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
        c_ExtractCertReqSig(file, password(), label, algorithm.selector(), target.toString()),
        label);
  }

  /**
   * Writes a certificate to a file.
   *
   * @param label the label of its entry
   * @param target the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with code 117 when no key has the label
   */
  public void extractCertificate(String label, Path target, Encoding encoding)
      throws CMSKeyDatabaseException {
    check(
        c_ExtractCert(file, password(), label, target.toString(), encoding.isBase64()), label);
  }

  /**
   * Exports entries to a PKCS#12 file (RFC&nbsp;7292), each with its key and chain.
   *
   * @param target the file
   * @param targetPassword the password of that file
   * @param labels the labels of the entries, one at least
   * @throws CMSKeyDatabaseException with code 117 when no key has one of the labels
   */
  public void exportPfx(Path target, char[] targetPassword, List<String> labels)
      throws CMSKeyDatabaseException {
    if (labels.isEmpty()) {
      throw new IllegalArgumentException("there is nothing to export");
    }
    // Given two labels or more, the native method loses the first and exports the others. So several
    // labels go behind one that may be lost; a single label is exported as it stands.
    List<String> given = new ArrayList<>(labels);
    if (labels.size() > 1) {
      given.add(0, labels.get(0));
    }
    check(
        c_ExportToPFXFile(
            file, password(), target.toString(), new String(targetPassword),
            given.toArray(String[]::new)),
        String.join(", ", labels));
  }

  /**
   * Imports all keys and certificates of a PKCS#12 file (RFC&nbsp;7292).
   *
   * @param source the file
   * @param sourcePassword the password of that file
   * @throws CMSKeyDatabaseException with code 120 when that password is wrong, with code 119 when the
   *     file is no PKCS#12 file
   */
  public void importPfx(Path source, char[] sourcePassword) throws CMSKeyDatabaseException {
    check(
        c_ImportFromPFXFile(file, password(), source.toString(), new String(sourcePassword)),
        source);
  }

  /**
   * Writes the whole database to a key ring file.
   *
   * @param keyRing the file
   * @param keyRingPassword the password that it gets
   * @throws CMSKeyDatabaseException when it cannot be written
   */
  public void convertToKeyRing(Path keyRing, char[] keyRingPassword)
      throws CMSKeyDatabaseException {
    check(
        c_Kdb2Kyr(file, password(), keyRing.toString(), new String(keyRingPassword)), keyRing);
  }

  /**
   * Makes a key database out of a key ring file.
   *
   * @param keyRing the file
   * @param keyRingPassword its password
   * @param file the key database, which does not exist yet
   * @param password the password that the key database gets
   * @return the new database
   * @throws CMSKeyDatabaseException with code 9 when the key database exists
   */
  public static CMSKeyDatabase convertFromKeyRing(
      Path keyRing, char[] keyRingPassword, Path file, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code =
        db.c_Kyr2Kdb(keyRing.toString(), new String(keyRingPassword), db.file, db.password());
    return db.unless(code);
  }

  /**
   * Reads the certificates of a PKCS&nbsp;#7 file (RFC&nbsp;2315).
   *
   * @param source the file
   * @param encoding the form of the file
   * @return the certificates, in the order of the file
   * @throws CMSKeyDatabaseException with code 87 when the file cannot be read, with code 2 when it is
   *     no PKCS&nbsp;#7
   */
  public static List<CertificateItem> readPkcs7(Path source, Encoding encoding)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase none = new CMSKeyDatabase(source, FROM_STASH)) {
      CertificateItem[] certificates =
          none.c_ExtractCertFromPKCS7Data(source.toString(), encoding.isBase64());
      if (certificates == null) {
        throw none.failure(Files.isReadable(source) ? BAD_ASN1 : CANNOT_READ_FILE);
      }
      return List.of(certificates);
    }
  }

  /**
   * Encrypts a private key under a password.
   *
   * @param privateKey a DER PrivateKeyInfo, which the caller wipes
   * @param password the password
   * @return the encrypted key
   * @throws CMSKeyDatabaseException with code 32 when the bytes are no private key
   */
  public static EncryptedPrivateKeyInfoItem encryptPrivateKey(byte[] privateKey, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase none = new CMSKeyDatabase(Path.of("private key"), password)) {
      EncryptedPrivateKeyInfoItem item =
          none.c_EncryptPrivateKey(privateKey.length, privateKey, none.password());
      if (item == null) {
        throw none.failure(CRYPTOGRAPHY_FAILED);
      }
      return item;
    }
  }

  /**
   * Decrypts a private key.
   *
   * @param privateKey the encrypted key
   * @param password its password
   * @return the key in the clear, which the caller closes
   * @throws CMSKeyDatabaseException with code 120 when the password is wrong or the key damaged
   */
  public static PrivateKeyInfoItem decryptPrivateKey(
      EncryptedPrivateKeyInfoItem privateKey, char[] password) throws CMSKeyDatabaseException {
    KMSystem.start();
    byte[] der = privateKey.der();
    try (CMSKeyDatabase none = new CMSKeyDatabase(Path.of("private key"), password)) {
      PrivateKeyInfoItem item = none.c_DecryptPrivateKey(der.length, der, none.password());
      if (item == null) {
        throw none.failure(WRONG_PASSWORD_OR_DAMAGED);
      }
      return item;
    }
  }

  /** This database when the code is 0; otherwise the password is wiped. */
  private CMSKeyDatabase unless(int code) throws CMSKeyDatabaseException {
    if (code != 0) {
      close();
    }
    check(code);
    return this;
  }

  /** Why a label led to nothing: an entry that is listed and yet not given cannot be read. */
  private CMSKeyDatabaseException noEntry(String label, List<String> listed) {
    return failure(listed.contains(label) ? CANNOT_READ_ENTRY : NO_SUCH_LABEL, label);
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

  private native int c_CreateNewKeyDb(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_CreateNewKeyDbFIPS(String keyDbFileName, String keyDbPwd, long expireTime);

  private native int c_OpenKeyDb(String keyDbFileName, String keyDbPwd);

  private native boolean c_ChangeKeyDbPwd(
      String keyDbFileName, String oldPwd, String newPwd, long expireTime);

  private native boolean c_StashKeyDbPwd(String keyDbFileName, String keyDbPwd);

  private native boolean c_IsPasswordRequired(String keyDbFileName);

  // Queries.

  private native int c_BuildKeyLabelList(String keyDbFileName, String keyDbPwd);

  private native KeyItem c_GetKeyItemByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  private native KeyItem[] c_GetKeyItemListByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  private native KeyItem[] c_GetKeyItemsByPublicKey(
      String keyDbFileName, String keyDbPwd, int publicKeyLength, byte[] publicKey);

  private native KeyItem c_GetDefaultKeyItem(String keyDbFileName, String keyDbPwd);

  private native boolean c_IsPrivateKeyPresent(
      String keyDbFileName, String keyDbPwd, String keyLabel);

  // Maintenance.

  private native int c_InsertKey(
     String keyDbFileName, String keyDbPwd, String keyLabel, int certLength, byte[] certData,
     int keyLength, byte[] keyData, boolean trusted, boolean makeDefault);

  private native int c_InsertReqKey(
     String keyDbFileName, String keyDbPwd, String keyLabel, int requestLength, byte[] requestData,
     int keyLength, byte[] keyData);

  private native int c_DeleteKeyByLabel(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean isRequestKey);

  private native int c_SetDefaultKey(String keyDbFileName, String keyDbPwd, String keyLabel);

  private native int c_SetKeyTrust(
      String keyDbFileName, String keyDbPwd, String keyLabel, boolean trusted);

  // New certificates and requests.

  private native int c_CreateNewSelfSignedCertificate(
     String keyDbFileName, String keyDbPwd, int version, String keyLabel, boolean makeDefault,
     int keySize, DNItem subject, int validityDays, String certFileName, boolean isBase64);

  private native int c_CreateNewSelfSignedCertificateSigExt(
     String keyDbFileName, String keyDbPwd, int version, String keyLabel, boolean makeDefault,
     int keySize, DNItem subject, int validityDays, int sigAlg, int extLength, byte[] extData,
     String certFileName, boolean isBase64);

  private native int c_CreateNewCertRequest(
     String keyDbFileName, String keyDbPwd, String keyLabel, int keySize, DNItem subject,
     String certReqFileName, boolean createNew);

  private native int c_CreateNewCertRequestSigExt(
     String keyDbFileName, String keyDbPwd, String keyLabel, int keySize, DNItem subject,
     int sigAlg, int extLength, byte[] extData, String certReqFileName, boolean createNew);

  private native int c_IssueCertificate(
     String keyDbFileName, String keyDbPwd, String issuerKeyLabel, int version, String serialNumber,
     int validityDays, String certReqFileName, String certFileName, boolean isBase64);

  private native int c_IssueCertificateSig(
     String keyDbFileName, String keyDbPwd, String issuerKeyLabel, int version, String serialNumber,
     int validityDays, int sigAlg, String certReqFileName, String certFileName, boolean isBase64);

  // Private keys outside a database.

  private native EncryptedPrivateKeyInfoItem c_EncryptPrivateKey(
      int length, byte[] privateKey, String password);

  private native PrivateKeyInfoItem c_DecryptPrivateKey(
      int length, byte[] encryptedKey, String password);

  // Import and export.

  private native int c_ExportToPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd, String[] labels);

  private native int c_ImportFromPFXFile(
      String keyDbFileName, String keyDbPwd, String pfxFileName, String pfxPwd);

  private native int c_ReceiveCert(
     String keyDbFileName, String keyDbPwd, String certFileName, boolean isBase64,
     boolean makeDefault);

  private native int c_AddCaCert(
     String keyDbFileName, String keyDbPwd, String keyLabel, String certFileName, boolean isBase64);

  private native int c_ExtractCert(
     String keyDbFileName, String keyDbPwd, String keyLabel, String certFileName, boolean isBase64);

  private native int c_ExtractCertReq(
      String keyDbFileName, String keyDbPwd, String keyLabel, String certReqFileName);

  private native int c_ExtractCertReqSig(
      String keyDbFileName, String keyDbPwd, String keyLabel, int sigAlg, String certReqFileName);

  private native CertificateItem[] c_ExtractCertFromPKCS7Data(
      String certFileName, boolean isBase64);

  // Conversion, renewal and validation.

  private native int c_Kyr2Kdb(
      String kyrFileName, String kyrPwd, String keyDbFileName, String keyDbPwd);

  private native int c_Kdb2Kyr(
      String keyDbFileName, String keyDbPwd, String kyrFileName, String kyrPwd);

  private native boolean c_CheckCertAsRenewal(
      String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  private native int c_RenewCert(
      String keyDbFileName, String keyDbPwd, int certLength, byte[] certData);

  private native boolean c_ValidateCertificateChain(
      String keyDbFileName, String keyDbPwd, byte[] certData, int certLength);
}
