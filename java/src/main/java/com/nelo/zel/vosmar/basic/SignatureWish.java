package com.nelo.zel.vosmar.basic;

/**
 * Something that shall be signed, with the digest that is wished for.
 *
 * @param <T> the class that is built by such wishes
 */
abstract class SignatureWish<T extends SignatureWish<T>> {
  private SignatureAlgorithm algorithm;

  SignatureWish() {}

  /**
   * Sets the digest of the signature. Ed25519 keys ignore it.
   *
   * @param algorithm the digest, or null to leave it to the library
   * @return this object
   */
  public T signedWith(SignatureAlgorithm algorithm) {
    this.algorithm = algorithm;
    return self();
  }

  /** This object, as what it is. */
  abstract T self();

  /** The digest, or null when it is left to the library. */
  SignatureAlgorithm wishedAlgorithm() {
    return algorithm;
  }
}
