package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.Arrays;

/** What an object for a key database remembers, and how its operations fail. */
abstract class KeyDatabaseFile implements AutoCloseable {
  /** The name of the file, as the native methods take it. */
  final String file;

  private final char[] password;
  private boolean closed;

  KeyDatabaseFile(Path file, char[] password) {
    this.file = file.toString();
    this.password = password.clone();
  }

  /** Wipes the password. The database can be used no longer through this object. */
  @Override
  public synchronized void close() {
    Arrays.fill(password, '\0');
    closed = true;
  }

  @Override
  public String toString() {
    return getClass().getSimpleName() + "[" + file + "]";
  }

  /** The password as the native methods take it. */
  final synchronized String password() {
    if (closed) {
      throw new IllegalStateException(file + " is closed");
    }
    return new String(password);
  }

  final void check(int code) throws CMSKeyDatabaseException {
    if (code != 0) {
      throw failure(code);
    }
  }

  /** For an operation on one entry, or on another file, which the message names. */
  final void check(int code, Object what) throws CMSKeyDatabaseException {
    if (code != 0) {
      throw failure(code, what);
    }
  }

  final CMSKeyDatabaseException failure(int code) {
    return new CMSKeyDatabaseException(code, file);
  }

  final CMSKeyDatabaseException failure(int code, Object what) {
    return new CMSKeyDatabaseException(code, file + ": " + what);
  }
}
