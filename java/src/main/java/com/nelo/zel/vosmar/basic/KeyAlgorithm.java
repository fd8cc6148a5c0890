package com.nelo.zel.vosmar.basic;

/** The kinds of keys that a key database holds. */
public enum KeyAlgorithm {
  /** RSA (RFC&nbsp;8017). */
  RSA("RSA"),
  /** Elliptic curve keys on the NIST curves P-256, P-384 and P-521. */
  EC("EC"),
  /** Edwards curve keys on Curve25519 (RFC&nbsp;8032). */
  ED25519("Ed25519"),
  /** A kind that this version does not know. */
  UNKNOWN("unknown");

  private final String displayName;

  KeyAlgorithm(String displayName) {
    this.displayName = displayName;
  }

  /** The algorithm behind the number of the native library. */
  static KeyAlgorithm of(int number) {
    return switch (number) {
      case 1 -> RSA;
      case 2 -> EC;
      case 3 -> ED25519;
      default -> UNKNOWN;
    };
  }

  /** The name as people write it. */
  @Override
  public String toString() {
    return displayName;
  }
}
