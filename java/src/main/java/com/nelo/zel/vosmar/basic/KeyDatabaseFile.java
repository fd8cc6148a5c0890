package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.Objects;

/** What an object for a key database remembers. */
abstract class KeyDatabaseFile extends PasswordHolder {
  /** The name of the file, as the native methods take it. */
  final String file;

  KeyDatabaseFile(Path file, char[] password) {
    super(file.toString(), Objects.requireNonNull(password));
    this.file = file.toString();
  }
}
