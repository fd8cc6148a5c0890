package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.DNItem;
import com.nelo.zel.vosmar.basic.KeyType;
import com.nelo.zel.vosmar.basic.SignatureAlgorithm;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;

/** What a new key shall be, and whom its certificate or request names. */
final class NewKeyOptions {
  @Option(
      names = "--subject",
      required = true,
      paramLabel = "NAME",
      description = "Whom the certificate names, such as CN=www.example.com,O=Example,C=DE.")
  private String subject;

  @Option(
      names = "--key",
      defaultValue = "rsa:2048",
      paramLabel = "TYPE",
      description = "rsa:BITS, ec:BITS or ed25519; ${DEFAULT-VALUE} when not given.")
  private String keyType;

  @Mixin private SignatureOption signature;

  DNItem subject() {
    return DNItem.parse(subject);
  }

  KeyType keyType() {
    return KeyType.parse(keyType);
  }

  /** The digest, or null when it is not given. */
  SignatureAlgorithm signature() {
    return signature.algorithm();
  }
}
