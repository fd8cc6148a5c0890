package com.nelo.zel.vosmar.cli;

import java.nio.file.Path;
import picocli.CommandLine.ArgGroup;
import picocli.CommandLine.Option;

/** The password of a PFX file. */
final class PfxPassword extends PasswordOptions {
  private static final String OPTION = "--pfx-password";

  @ArgGroup private Source source = new Source();

  private static final class Source {
    @Option(
        names = OPTION + "-env",
        paramLabel = "VARIABLE",
        description = "Take the PFX password from this environment variable.")
    private String variable;

    @Option(
        names = OPTION + "-file",
        paramLabel = "FILE",
        description = "Take the PFX password from the first line of this file; - is standard input.")
    private Path path;
  }

  PfxPassword(Secrets secrets) {
    super(secrets, "PFX password", OPTION);
  }

  @Override
  String environmentVariable() {
    return source.variable;
  }

  @Override
  Path file() {
    return source.path;
  }
}
