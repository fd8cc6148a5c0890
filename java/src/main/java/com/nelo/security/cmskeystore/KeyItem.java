package com.nelo.security.cmskeystore;

import java.util.List;
import java.util.Objects;
import java.util.stream.Stream;

/**
 * One entry of a key database: a key with its certificate and chain, or a certificate alone. Built by
 * the native library only.
 */
public final class KeyItem {
  private final String label;
  private final int algorithm;
  private final int keySize;
  private final EncryptedPrivateKeyInfoItem privateKey;
  private final List<CertificateItem> certificates;
  private final BERObject subjectPublicKeyInfo;
  private final boolean trusted;
  private final boolean defaultKey;
  private boolean hasPrivateKey;

  private KeyItem(
      String label,
      short algorithm,
      short keySize,
      EncryptedPrivateKeyInfoItem privateKey,
      CertificateItem[] certificates,
      BERObject subjectPublicKeyInfo,
      boolean trusted,
      boolean defaultKey) {
    this.label = label;
    this.algorithm = algorithm;
    this.keySize = keySize;
    this.privateKey = privateKey;
    this.certificates = certificates == null ? List.of() : usable(certificates);
    this.subjectPublicKeyInfo = subjectPublicKeyInfo;
    this.trusted = trusted;
    this.defaultKey = defaultKey;
  }

  /** A certificate that could not be converted is null; the chain ends before it. */
  private static List<CertificateItem> usable(CertificateItem[] certificates) {
    return Stream.of(certificates).takeWhile(Objects::nonNull).toList();
  }

  /** Called by the native library right after the constructor, before anybody else sees the item. */
  private void setHasPrivateKey(boolean hasPrivateKey) {
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
   * The kind of key.
   *
   * @return 1 for RSA, 2 for EC, 3 for Ed25519
   */
  public int algorithm() {
    return algorithm;
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
  public EncryptedPrivateKeyInfoItem privateKey() {
    return privateKey;
  }

  /**
   * The certificate and, after it, the issuers that the database knows.
   *
   * @return the chain, the entry's own certificate first
   */
  public List<CertificateItem> certificates() {
    return certificates;
  }

  /**
   * The entry's own certificate.
   *
   * @return the first of {@link #certificates()}, or null when there is none
   */
  public CertificateItem certificate() {
    return certificates.isEmpty() ? null : certificates.get(0);
  }

  /**
   * The public key.
   *
   * @return a SubjectPublicKeyInfo, or null when the library gave none
   */
  public BERObject subjectPublicKeyInfo() {
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
