package com.nelo.zel.vosmar.basic;

import java.util.Locale;

/**
 * Algorithm and size of a key to be made.
 *
 * @param algorithm RSA, EC or Ed25519
 * @param bits the size; for EC that of the NIST curve, for Ed25519 always 255
 */
public record KeyType(KeyAlgorithm algorithm, int bits) {
  private static final int ED25519_BITS = 255;

  /** The native library knows Ed25519 by this size, which no other key has. */
  private static final int ED25519_SELECTOR = 25519;

  /**
   * Rejects sizes that no key of the algorithm has.
   *
   * @param algorithm RSA, EC or Ed25519
   * @param bits the size
   */
  public KeyType {
    switch (algorithm) {
      case RSA -> require(bits >= 2048 && bits <= 16384, "RSA keys have 2048 to 16384 bits", bits);
      case EC ->
          require(
              bits == 256 || bits == 384 || bits == 521, "EC keys have 256, 384 or 521 bits", bits);
      case ED25519 -> require(bits == ED25519_BITS, "Ed25519 keys have 255 bits", bits);
      case UNKNOWN -> throw new IllegalArgumentException("keys of an unknown kind cannot be made");
    }
  }

  /**
   * An RSA key.
   *
   * @param bits 2048 to 16384
   * @return its type
   */
  public static KeyType rsa(int bits) {
    return new KeyType(KeyAlgorithm.RSA, bits);
  }

  /**
   * An elliptic curve key.
   *
   * @param bits 256, 384 or 521: the NIST curve of that size
   * @return its type
   */
  public static KeyType ec(int bits) {
    return new KeyType(KeyAlgorithm.EC, bits);
  }

  /**
   * An Ed25519 key.
   *
   * @return its type
   */
  public static KeyType ed25519() {
    return new KeyType(KeyAlgorithm.ED25519, ED25519_BITS);
  }

  /**
   * Reads a key type.
   *
   * @param text {@code rsa:BITS}, {@code ec:BITS} or {@code ed25519}, in any case
   * @return the type
   * @throws IllegalArgumentException when there are no such keys
   */
  public static KeyType parse(String text) {
    String[] parts = text.toLowerCase(Locale.ROOT).split(":", 2);
    if (parts[0].equals("ed25519") && parts.length == 1) {
      return ed25519();
    }
    if (parts.length == 2 && parts[1].matches("[0-9]{1,5}")) {
      int bits = Integer.parseInt(parts[1]);
      switch (parts[0]) {
        case "rsa":
          return rsa(bits);
        case "ec":
          return ec(bits);
        default:
          break;
      }
    }
    throw new IllegalArgumentException(text + " is none of rsa:BITS, ec:BITS and ed25519");
  }

  private static void require(boolean possible, String rule, int bits) {
    if (!possible) {
      throw new IllegalArgumentException(rule + ", not " + bits);
    }
  }

  /** The number by which the native library knows algorithm and size together. */
  int selector() {
    return algorithm == KeyAlgorithm.ED25519 ? ED25519_SELECTOR : bits;
  }
}
