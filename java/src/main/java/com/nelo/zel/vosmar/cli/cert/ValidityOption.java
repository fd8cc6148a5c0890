package com.nelo.zel.vosmar.cli.cert;

import picocli.CommandLine.Option;

/** How long a new certificate is valid. */
final class ValidityOption {
  @Option(
      names = "--days",
      defaultValue = "365",
      paramLabel = "DAYS",
      description = "The period of validity; ${DEFAULT-VALUE} when not given.")
  private int days;

  int days() {
    return days;
  }
}
