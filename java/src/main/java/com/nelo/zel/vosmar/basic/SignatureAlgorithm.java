package com.nelo.zel.vosmar.basic;

/** The digest that a signature is made over; the rest of its algorithm follows from the key. */
public enum SignatureAlgorithm {
  /** SHA-256 (FIPS 180-4). */
  SHA256(1),
  /** SHA-512 (FIPS 180-4). */
  SHA512(2);

  private final int selector;

  SignatureAlgorithm(int selector) {
    this.selector = selector;
  }

  /** The number of the native library. */
  int selector() {
    return selector;
  }
}
