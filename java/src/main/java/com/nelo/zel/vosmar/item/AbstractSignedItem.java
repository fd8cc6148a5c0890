package com.nelo.zel.vosmar.item;

/**
 * What certificates and requests are alike in: a name and a public key under a signature.
 *
 * @param <N> the class of names
 * @param <B> the class of BER objects
 */
public abstract class AbstractSignedItem<N extends AbstractDNItem, B extends AbstractBERObject> {
  private final int keySize;
  private final N subject;
  private final B subjectPublicKeyInfo;
  private final byte[] signature;
  private final B signatureAlgorithm;
  private final String signatureAlgorithmOid;
  private final String signatureAlgorithmName;
  private final byte[] der;

  /**
   * Makes an item that takes the bytes over.
   *
   * @param keySize bits of the public key
   * @param subject whom the item names
   * @param subjectPublicKeyInfo the public key
   * @param signature the signature
   * @param signatureAlgorithm its AlgorithmIdentifier
   * @param signatureAlgorithmOid its algorithm in dotted numbers
   * @param signatureAlgorithmName its algorithm's short name
   * @param der the whole encoding
   */
  protected AbstractSignedItem(
      int keySize,
      N subject,
      B subjectPublicKeyInfo,
      byte[] signature,
      B signatureAlgorithm,
      String signatureAlgorithmOid,
      String signatureAlgorithmName,
      byte[] der) {
    this.keySize = keySize;
    this.subject = subject;
    this.subjectPublicKeyInfo = subjectPublicKeyInfo;
    this.signature = signature;
    this.signatureAlgorithm = signatureAlgorithm;
    this.signatureAlgorithmOid = signatureAlgorithmOid;
    this.signatureAlgorithmName = signatureAlgorithmName;
    this.der = der;
  }

  /**
   * The size of the public key.
   *
   * @return bits
   */
  public int keySize() {
    return keySize;
  }

  /**
   * Whom the certificate names, or shall name.
   *
   * @return the subject
   */
  public N subject() {
    return subject;
  }

  /**
   * The public key.
   *
   * @return a SubjectPublicKeyInfo
   */
  public B subjectPublicKeyInfo() {
    return subjectPublicKeyInfo;
  }

  /**
   * The signature: a certificate's by its issuer, a request's by the key itself.
   *
   * @return a copy of its bytes
   */
  public byte[] signature() {
    return copyOf(signature);
  }

  /**
   * How the item is signed.
   *
   * @return an AlgorithmIdentifier
   */
  public B signatureAlgorithm() {
    return signatureAlgorithm;
  }

  /**
   * How the item is signed, as an object identifier.
   *
   * @return dotted numbers
   */
  public String signatureAlgorithmOid() {
    return signatureAlgorithmOid;
  }

  /**
   * How the item is signed, as a name.
   *
   * @return the algorithm's short name
   */
  public String signatureAlgorithmName() {
    return signatureAlgorithmName;
  }

  /**
   * The whole certificate or request.
   *
   * @return a copy of its DER bytes
   */
  public byte[] der() {
    return der.clone();
  }

  /**
   * Copies bytes that an item made from its encoding alone does not have.
   *
   * @param bytes the bytes, or null
   * @return their copy, or null
   */
  static byte[] copyOf(byte[] bytes) {
    return bytes == null ? null : bytes.clone();
  }
}
