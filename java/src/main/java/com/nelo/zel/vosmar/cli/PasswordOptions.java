package com.nelo.zel.vosmar.cli;

import java.nio.file.Path;

/** The options that give one password: by environment variable, by file, else by prompt. */
abstract class PasswordOptions {
  private final Secrets secrets;
  private final String what;

  PasswordOptions(Secrets secrets, String what) {
    this.secrets = secrets;
    this.what = what;
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
    return read(false);
  }

  /** A password that is made up now: a person types it twice. */
  char[] fresh() {
    return read(true);
  }

  private char[] read(boolean confirm) {
    if (environmentVariable() != null) {
      return secrets.fromEnvironment(environmentVariable());
    }
    if (file() != null) {
      return secrets.fromFile(file());
    }
    return secrets.fromTerminal(what, confirm);
  }
}
