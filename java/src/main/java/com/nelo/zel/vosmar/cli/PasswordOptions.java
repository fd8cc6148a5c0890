package com.nelo.zel.vosmar.cli;

import java.nio.file.Path;

/** The options that give one password: by environment variable, by file, else by prompt. */
abstract class PasswordOptions {
  private final Secrets secrets;
  private final String what;
  private final String option;

  /** The options are the given one with -env and -file at its end. */
  PasswordOptions(Secrets secrets, String what, String option) {
    this.secrets = secrets;
    this.what = what;
    this.option = option;
  }

  /** The value of the option that names an environment variable, or null. */
  abstract String environmentVariable();

  /** The value of the option that names a file, or null. */
  abstract Path file();

  boolean given() {
    return environmentVariable() != null || file() != null;
  }

  /** A password that exists already. */
  char[] existing() {
    return read(what, false);
  }

  /** A password that is made up now: a person types it twice. */
  char[] fresh() {
    return read(what, true);
  }

  /** The same for what is called otherwise in a question. */
  final char[] read(String what, boolean confirm) {
    if (environmentVariable() != null) {
      return secrets.fromEnvironment(environmentVariable());
    }
    if (file() != null) {
      return secrets.fromFile(file());
    }
    if (!secrets.hasTerminal()) {
      throw new SecretException(
          String.format(
              "there is no terminal to ask for the %s: use %s-env or %s-file",
              what, option, option));
    }
    return secrets.fromTerminal(what, confirm);
  }
}
