package com.nelo.zel.vosmar.item;

import java.util.List;
import java.util.Objects;
import java.util.stream.Stream;

/**
 * One entry of a key database. Built by the native library only.
 *
 * @param <K> the class of encrypted private keys
 * @param <C> the class of certificates
 * @param <B> the class of BER objects
 */
public abstract class AbstractKeyItem<
        K extends AbstractEncryptedPrivateKeyInfoItem,
        C extends AbstractCertificateItem<?, B>,
        B extends AbstractBERObject> {
  private final String label;
  private final int keySize;
  private final K privateKey;
  private final List<C> certificates;
  private final B subjectPublicKeyInfo;
  private final boolean trusted;
  private final boolean defaultKey;
  private boolean hasPrivateKey;

  /**
   * Makes an entry.
   *
   * @param label its name
   * @param keySize bits of the key
   * @param privateKey the private key, or null
   * @param certificates the chain, or null
   * @param subjectPublicKeyInfo the public key, or null
   * @param trusted whether chains may end at it
   * @param defaultKey whether it is used when no key is named
   */
  protected AbstractKeyItem(
      String label,
      int keySize,
      K privateKey,
      C[] certificates,
      B subjectPublicKeyInfo,
      boolean trusted,
      boolean defaultKey) {
    this.label = label;
    this.keySize = keySize;
    this.privateKey = privateKey;
    this.certificates = certificates == null ? List.of() : usable(certificates);
    this.subjectPublicKeyInfo = subjectPublicKeyInfo;
    this.trusted = trusted;
    this.defaultKey = defaultKey;
  }

  /** A certificate that could not be converted is null; the chain ends before it. */
  private static <C> List<C> usable(C[] certificates) {
    return Stream.of(certificates).takeWhile(Objects::nonNull).toList();
  }

  /**
   * Called by the native library right after the constructor, before anybody else sees the item.
   *
   * @param hasPrivateKey whether the database holds the private key
   */
  protected final void setHasPrivateKey(boolean hasPrivateKey) {
    this.hasPrivateKey = hasPrivateKey;
  }

  /**
   * The name of the entry in its database.
   *
   * @return the label
   */
  public String label() {
    return label;
  }

  /**
   * The size of the key.
   *
   * @return bits
   */
  public int keySize() {
    return keySize;
  }

  /**
   * Whether the database holds the private key of this entry.
   *
   * @return true for a key, false for a certificate alone
   */
  public boolean hasPrivateKey() {
    return hasPrivateKey;
  }

  /**
   * The private key, encrypted under the password of the database.
   *
   * @return the key, or null when there is none
   */
  public K privateKey() {
    return privateKey;
  }

  /**
   * The certificate and, after it, the issuers that the database knows.
   *
   * @return the chain, the entry's own certificate first; empty for a request
   */
  public List<C> certificates() {
    return certificates;
  }

  /**
   * The entry's own certificate.
   *
   * @return the first of {@link #certificates()}, or null when there is none
   */
  public C certificate() {
    return certificates.isEmpty() ? null : certificates.get(0);
  }

  /**
   * The public key.
   *
   * @return a SubjectPublicKeyInfo, or null when the library gave none
   */
  public B subjectPublicKeyInfo() {
    return subjectPublicKeyInfo;
  }

  /**
   * Whether chains may end at this entry's certificate.
   *
   * @return true for a trusted entry
   */
  public boolean isTrusted() {
    return trusted;
  }

  /**
   * Whether this is the key that is used when none is named.
   *
   * @return true for the default key
   */
  public boolean isDefault() {
    return defaultKey;
  }

  @Override
  public String toString() {
    return "KeyItem[" + label + "]";
  }
}
