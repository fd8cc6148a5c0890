package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/**
 * What a certificate request (PKCS&nbsp;#10, RFC&nbsp;2986) shall ask for:
 *
 * <pre>
 * new NewCertificateRequest("server", DNItem.parse("CN=localhost"), KeyType.ec(256), Path.of("server.csr"))
 * </pre>
 */
public final class NewCertificateRequest {
  private final String label;
  private final DNItem subject;
  private final KeyType keyType;
  private final Path file;
  private SignatureAlgorithm signatureAlgorithm;
  private byte[] extensions = {};

  /**
   * A request signed by an algorithm as strong as its key, without wishes for extensions.
   *
   * @param label the name under which the request waits for its certificate
   * @param subject whom the certificate shall name
   * @param keyType what key is made for it
   * @param file where the request is written, in Base64
   */
  public NewCertificateRequest(String label, DNItem subject, KeyType keyType, Path file) {
    this.label = label;
    this.subject = subject;
    this.keyType = keyType;
    this.file = file;
  }

  /**
   * Sets the digest of the signature. Ed25519 keys ignore it.
   *
   * @param algorithm the digest, or null to leave it to the library
   * @return this object
   */
  public NewCertificateRequest signedWith(SignatureAlgorithm algorithm) {
    signatureAlgorithm = algorithm;
    return this;
  }

  /**
   * Sets the extensions that are asked for.
   *
   * @param der a DER {@code Extensions} (RFC&nbsp;5280, section 4.1)
   * @return this object
   */
  public NewCertificateRequest withExtensions(byte[] der) {
    extensions = der.clone();
    return this;
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

  String fileName() {
    return file.toString();
  }

  /** Whether digest and extensions are left to the library. */
  boolean isPlain() {
    return signatureAlgorithm == null && extensions.length == 0;
  }

  SignatureAlgorithm signatureAlgorithm() {
    return signatureAlgorithm == null ? SignatureAlgorithm.SHA256 : signatureAlgorithm;
  }

  byte[] extensions() {
    return extensions;
  }
}
