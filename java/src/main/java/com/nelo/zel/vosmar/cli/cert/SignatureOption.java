package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.SignatureAlgorithm;
import picocli.CommandLine.Option;

/** How a certificate or request is signed. */
final class SignatureOption {
  @Option(
      names = "--signature",
      paramLabel = "DIGEST",
      description = "${COMPLETION-CANDIDATES}; chosen by the strength of the key when not given.")
  private SignatureAlgorithm algorithm;

  /** The digest, or null when it is not given. */
  SignatureAlgorithm algorithm() {
    return algorithm;
  }
}
