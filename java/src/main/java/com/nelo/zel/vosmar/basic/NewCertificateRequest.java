package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/**
 * What a certificate request (PKCS&nbsp;#10, RFC&nbsp;2986) shall ask for:
 *
 * <pre>
 * new NewCertificateRequest(
 *     "server", DNItem.parse("CN=localhost"), KeyType.ec(256), Path.of("server.csr"))
 * </pre>
 */
public final class NewCertificateRequest extends NewKeyWish<NewCertificateRequest> {
  private final String file;

  /**
   * A request signed by an algorithm as strong as its key, without wishes for extensions.
   *
   * @param label the name under which the request waits for its certificate
   * @param subject whom the certificate shall name
   * @param keyType what key is made for it
   * @param file where the request is written, in Base64
   */
  public NewCertificateRequest(String label, DNItem subject, KeyType keyType, Path file) {
    super(label, subject, keyType);
    this.file = file.toString();
  }

  /**
   * Sets the names that are asked for beside the subject, as the only extension.
   *
   * @param names the names
   * @return this object
   */
  public NewCertificateRequest alsoNamed(AlternativeNames names) {
    return withExtensions(names.extensions());
  }

  String fileName() {
    return file;
  }

  @Override
  NewCertificateRequest self() {
    return this;
  }
}
