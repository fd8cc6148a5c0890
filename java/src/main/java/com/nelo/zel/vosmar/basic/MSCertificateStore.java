package com.nelo.zel.vosmar.basic;

import static java.util.Objects.requireNonNull;

import com.nelo.zel.vosmar.internal.Answers;
import com.nelo.zel.vosmar.internal.PasswordHolder;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/**
 * A certificate store of the current user, such as {@code CurrentUser/My}: certificates with their
 * private keys, and the certificates of signers, each under a label.
 *
 * <p>A store is named by its cryptographic service provider (CSP); {@link #list} tells the names. An
 * object of this class remembers such a name and a password. It keeps nothing open: each operation
 * opens the store, works, and closes it. {@link #close()} wipes the password. What {@link
 * CMSKeyDatabase} says of passwords and strings, of missing arguments, and of reasons that are told a
 * moment later, holds here too.
 */
public final class MSCertificateStore implements AutoCloseable {
  // Filled by the native method while the stores are listed.
  private static final List<String> CSP_NAMES = new ArrayList<>();

  private final String cspName;
  private final Answers<CMSKeyDatabaseException> answers;
  private final PasswordHolder held;

  // Filled by the native method while the labels are listed.
  private final List<String> labels = new ArrayList<>();
  private final List<String> personalLabels = new ArrayList<>();
  private final List<String> signerLabels = new ArrayList<>();

  private MSCertificateStore(String cspName, char[] password) {
    this.cspName = requireNonNull(cspName);
    answers = new Answers<>(cspName, CMSKeyDatabaseException::new);
    held = new PasswordHolder(cspName, password);
  }

  /**
   * The labels of a store, in the order of the store.
   *
   * @param all every one of them
   * @param personal those of certificates with their private keys
   * @param signers those of certificates alone
   */
  public record Labels(List<String> all, List<String> personal, List<String> signers) {}

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

  /**
   * Lists the labels.
   *
   * @return the labels of all entries, and which of them have a private key
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  public synchronized Labels labels() throws CMSKeyDatabaseException {
    labels.clear();
    personalLabels.clear();
    signerLabels.clear();
    answers.check(c_BuildKeyLabelList(cspName, held.password()));
    return new Labels(
        List.copyOf(labels), List.copyOf(personalLabels), List.copyOf(signerLabels));
  }

  /**
   * Reads an entry.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no entry has the
   *     label
   */
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return answers.found(
        c_GetKeyItemByLabel(cspName, held.password(), requireNonNull(label)),
        label,
        () -> labels().all());
  }

  /**
   * Reads all entries that share a label.
   *
   * @param label the label
   * @return the entries; empty when there are none
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  public List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    return answers.all(
        c_GetKeyItemListByLabel(cspName, held.password(), requireNonNull(label)),
        () -> labels().all());
  }

  /**
   * Reads all entries of a public key.
   *
   * @param subjectPublicKeyInfo the key as a DER SubjectPublicKeyInfo
   * @return the entries; empty when there are none
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  public List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    return answers.all(
        c_GetKeyItemsByPublicKey(
            cspName, held.password(), subjectPublicKeyInfo.length, subjectPublicKeyInfo),
        () -> labels().all());
  }

  /**
   * Deletes an entry.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no entry has the
   *     label
   */
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    answers.check(c_DeleteKeyItemByLabel(cspName, held.password(), requireNonNull(label)), label);
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
    answers.check(
        c_ImportCertificate(
            cspName,
            held.password(),
            requireNonNull(label),
            certificate.length,
            certificate,
            privateKey == null ? 0 : privateKey.length,
            privateKey),
        label);
  }

  /**
   * Adds a signer's certificate.
   *
   * @param label the label of the new entry
   * @param certificate the file
   * @param encoding the form of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot
   *     be read
   */
  public void addSigner(String label, Path certificate, Encoding encoding)
      throws CMSKeyDatabaseException {
    answers.check(
        c_AddSignerCertificate(
            cspName, held.password(), requireNonNull(label), certificate.toString(),
            encoding.isBase64()),
        label);
  }

  /**
   * Makes a key and a self-signed certificate for it.
   *
   * @param certificate what it shall be like
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   * @throws IllegalArgumentException when it shall be the default key or be written to a file: with a
   *     certificate store neither is possible
   */
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    if (certificate.isDefaultKey() || certificate.fileName() != null) {
      throw new IllegalArgumentException("a certificate store has no default key and no files");
    }
    answers.check(
        c_CreateNewSelfSignedCertificate(
            cspName,
            held.password(),
            certificate.version(),
            certificate.label(),
            certificate.keyType().selector(),
            certificate.subject(),
            certificate.validityDays(),
            certificate.signatureAlgorithm().selector(),
            certificate.extensions().length,
            certificate.extensions()),
        certificate.label());
  }

  /** Wipes the password. The store can be used no longer through this object. */
  @Override
  public void close() {
    held.close();
  }

  @Override
  public String toString() {
    return "MSCertificateStore[" + cspName + "]";
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

  /** Called by the native library, after the call for every entry, for one without a private key. */
  private void addSignerKeyLabel(String label) {
    signerLabels.add(label);
  }

  // Names and labels.

  private static native int c_GetCSPNameList();

  private native int c_BuildKeyLabelList(String cspName, String password);

  // Entries.

  private native KeyItem c_GetKeyItemByLabel(String cspName, String password, String keyLabel);

  private native KeyItem[] c_GetKeyItemListByLabel(
      String cspName, String password, String keyLabel);

  private native KeyItem[] c_GetKeyItemsByPublicKey(
      String cspName, String password, int publicKeyLength, byte[] publicKey);

  private native int c_DeleteKeyItemByLabel(String cspName, String password, String keyLabel);

  // Certificates.

  private native int c_ImportCertificate(
      String cspName,
      String password,
      String keyLabel,
      int certLength,
      byte[] certData,
      int keyLength,
      byte[] keyData);

  private native int c_AddSignerCertificate(
      String cspName, String password, String keyLabel, String certFileName, boolean isBase64);

  private native int c_CreateNewSelfSignedCertificate(
      String cspName,
      String password,
      int version,
      String keyLabel,
      int keySize,
      DNItem subject,
      int validityDays,
      int sigAlg,
      int extLength,
      byte[] extData);
}
