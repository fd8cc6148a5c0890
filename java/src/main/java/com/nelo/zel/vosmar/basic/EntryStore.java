package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;

/**
 * What holds entries, each under a label: keys with their certificates, certificates alone, and
 * pending requests. It is a key database, a token, or a certificate store:
 *
 * <table>
 *   <caption>What they do</caption>
 *   <tr><th>Operations</th><th>{@link CMSKeyDatabase}</th><th>{@link CryptographicToken}</th>
 *     <th>{@link MSCertificateStore}</th></tr>
 *   <tr><td>keys and certificates: read, insert, delete, make</td><td>yes</td><td>yes</td>
 *     <td>yes</td></tr>
 *   <tr><td>pending requests</td><td>yes</td><td>yes</td><td>no</td></tr>
 *   <tr><td>renewing certificates, and writing them to files</td><td>yes</td><td>yes</td>
 *     <td>no</td></tr>
 *   <tr><td>a default key, and marks of trust</td><td>yes</td><td>no</td><td>no</td></tr>
 *   <tr><td>issuing and validating certificates</td><td>yes</td><td>no</td><td>no</td></tr>
 *   <tr><td>a secondary key database beside it</td><td>no</td><td>yes</td><td>no</td></tr>
 * </table>
 *
 * <p>What a token does not do it refuses with {@link ResultCode#CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT},
 * the other two with {@link ResultCode#UNSUPPORTED_OPTION}. A question whose answer is plain is
 * answered: there are no requests, so none has a label, and no key is the default one.
 *
 * <p>A store remembers what it is made of and its password. It keeps nothing open: each operation
 * opens what is below, works, and closes it, so that several programs can use it. Operations may be
 * called from any thread. {@link #close()} wipes the password.
 *
 * <p>Passwords are taken as {@code char[]}, which the caller can wipe; the native methods take them
 * as strings, so that each operation leaves a copy in the heap until the garbage collector
 * overwrites it.
 *
 * <p>Some native methods answer only yes or no, or an object or nothing. When such a method fails,
 * the store is looked at again to learn the reason, so the reason told may be of a moment later.
 *
 * <p>An argument is null only where its description says so: the native methods do not look, and a
 * missing text would end the virtual machine. Public methods do, and throw a {@link
 * NullPointerException}.
 */
public interface EntryStore extends AutoCloseable {
  /**
   * Lists the labels.
   *
   * @return the labels of keys and of pending requests
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  Labels labels() throws CMSKeyDatabaseException;

  /**
   * Lists the labels of the entries with a private key. A key database asks for each entry.
   *
   * @return some of the labels of keys, in the order of the store
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  default List<String> personalLabels() throws CMSKeyDatabaseException {
    List<String> personal = new ArrayList<>();
    for (String label : labels().keys()) {
      if (isPrivateKeyPresent(label)) {
        personal.add(label);
      }
    }
    return List.copyOf(personal);
  }

  /**
   * Lists the labels of certificates alone. A key database asks for each entry.
   *
   * @return the other labels of keys, in the order of the store
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  default List<String> signerLabels() throws CMSKeyDatabaseException {
    List<String> signers = new ArrayList<>(labels().keys());
    signers.removeAll(personalLabels());
    return List.copyOf(signers);
  }

  /**
   * Reads a key or certificate. The private key of an entry on a token stays there.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  KeyItem key(String label) throws CMSKeyDatabaseException;

  /**
   * Reads a pending request.
   *
   * @param label its label
   * @return the entry
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  KeyItem request(String label) throws CMSKeyDatabaseException;

  /**
   * Reads the default key, the one that is used when none is named.
   *
   * @return the entry, or nothing when no key is the default one
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  Optional<KeyItem> defaultKey() throws CMSKeyDatabaseException;

  /**
   * Whether an entry has a private key.
   *
   * @param label its label
   * @return false for a certificate alone
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  default boolean isPrivateKeyPresent(String label) throws CMSKeyDatabaseException {
    return key(label).hasPrivateKey();
  }

  /**
   * Reads all entries that share a label.
   *
   * @param label the label
   * @return the entries, one at least
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  default List<KeyItem> keysWithLabel(String label) throws CMSKeyDatabaseException {
    return List.of(key(label));
  }

  /**
   * Reads all entries of a public key.
   *
   * @param subjectPublicKeyInfo the key as a DER SubjectPublicKeyInfo, which is what {@link
   *     java.security.PublicKey#getEncoded} gives
   * @return the entries; empty when there are none
   * @throws CMSKeyDatabaseException when the store cannot be opened or read
   */
  default List<KeyItem> keysWithPublicKey(byte[] subjectPublicKeyInfo)
      throws CMSKeyDatabaseException {
    BERObject wanted = new BERObject(subjectPublicKeyInfo);
    List<KeyItem> found = new ArrayList<>();
    for (String label : labels().keys()) {
      KeyItem item = key(label);
      if (wanted.equals(item.subjectPublicKeyInfo())) {
        found.add(item);
      }
    }
    return List.copyOf(found);
  }

  /**
   * Adds a certificate without private key.
   *
   * @param label its label
   * @param certificate a DER certificate
   * @param trusted whether it is marked as one that chains may end at
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken
   */
  void insertCertificate(String label, byte[] certificate, boolean trusted)
      throws CMSKeyDatabaseException;

  /**
   * Adds a key and its certificate.
   *
   * @param label its label
   * @param certificate a DER certificate
   * @param privateKey its key: PKCS&nbsp;#8, EncryptedPrivateKeyInfo under the password of this
   *     store, or a traditional RSA or EC key, in DER; the caller wipes it
   * @param trusted whether the certificate is marked as one that chains may end at
   * @param makeDefault whether it becomes the default key
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken, with {@link ResultCode#VALIDATION_KEY_PAIR} when key and certificate do not
   *     belong together
   */
  void insertKey(
      String label, byte[] certificate, byte[] privateKey, boolean trusted, boolean makeDefault)
      throws CMSKeyDatabaseException;

  /**
   * Adds a pending request and its key.
   *
   * @param label its label
   * @param request a DER request (PKCS&nbsp;#10, RFC&nbsp;2986)
   * @param privateKey its key, as for {@link #insertKey}; null for one that a token has already
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_DUPLICATE_KEY_LABEL} when the
   *     label is taken, with {@link ResultCode#VALIDATION_KEY_PAIR} when key and request do not
   *     belong together
   */
  void insertRequest(String label, byte[] request, byte[] privateKey)
      throws CMSKeyDatabaseException;

  /**
   * Deletes a key or certificate for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  void deleteKey(String label) throws CMSKeyDatabaseException;

  /**
   * Deletes a pending request and its key for good.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no request has
   *     the label
   */
  void deleteRequest(String label) throws CMSKeyDatabaseException;

  /**
   * Makes a key the default key.
   *
   * @param label its label
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  void setDefaultKey(String label) throws CMSKeyDatabaseException;

  /**
   * Says whether chains may end at a certificate.
   *
   * @param label its label
   * @param trusted whether they may
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has the
   *     label
   */
  void setTrusted(String label, boolean trusted) throws CMSKeyDatabaseException;

  /**
   * Puts a key database beside the store: issuers that the store has no room for are looked up
   * there, and the signers that come along with a personal certificate are put there.
   *
   * @param file the key database, or null for none from now on
   * @param itsPassword the password of the database, or null to use its stash file
   * @throws CMSKeyDatabaseException when the store takes none
   */
  void useSecondaryKeyDatabase(Path file, char[] itsPassword) throws CMSKeyDatabaseException;

  /** {@return what is done with the certificates and requests of this store} */
  Certificates certificates();

  /** Wipes the password. The store can be used no longer through this object. */
  @Override
  void close();
}
