package com.nelo.zel.vosmar.cli;

import java.nio.file.Path;
import picocli.CommandLine.ArgGroup;
import picocli.CommandLine.Option;

/** The password that the key database gets, or the PIN that the token gets. */
final class NewPassword extends PasswordOptions {
  private static final String OPTION = "--new-password";

  @ArgGroup private Source source = new Source();

  private static final class Source {
    @Option(
        names = OPTION + "-env",
        paramLabel = "VARIABLE",
        description = "Take the new password, or PIN, from this environment variable.")
    private String variable;

    @Option(
        names = OPTION + "-file",
        paramLabel = "FILE",
        description = 
            "Take the new password, or PIN, from the first line of this file; - is standard input.")
    private Path path;
  }

  NewPassword(Secrets secrets) {
    super(secrets, "new database password", OPTION);
  }

  char[] pin() {
    return read("new token PIN", true);
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
