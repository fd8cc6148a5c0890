package com.nelo.zel.vosmar.basic;

import java.util.Objects;

/**
 * A new key, and what shall be signed with it.
 *
 * @param <T> the class that is built by such wishes
 */
abstract class NewKeyWish<T extends NewKeyWish<T>> extends SignatureWish<T> {
  private final String label;
  private final DNItem subject;
  private final KeyType keyType;
  private byte[] extensions = {};

  NewKeyWish(String label, DNItem subject, KeyType keyType) {
    this.label = Objects.requireNonNull(label);
    this.subject = Objects.requireNonNull(subject);
    this.keyType = Objects.requireNonNull(keyType);
  }

  /**
   * Sets the extensions, in place of those that the library chooses.
   *
   * @param der a DER {@code Extensions} (RFC&nbsp;5280, section 4.1)
   * @return this object
   */
  public T withExtensions(byte[] der) {
    extensions = der.clone();
    return self();
  }

  String label() {
    return label;
  }

  DNItem subject() {
    return subject;
  }

  KeyType keyType() {
    return keyType;
  }

  /** Whether digest and extensions are left to the library. */
  boolean isPlain() {
    return wishedAlgorithm() == null && extensions.length == 0;
  }

  /** The digest, for natives that want one. */
  SignatureAlgorithm signatureAlgorithm() {
    return wishedAlgorithm() == null ? SignatureAlgorithm.SHA256 : wishedAlgorithm();
  }

  byte[] extensions() {
    return extensions;
  }
}
