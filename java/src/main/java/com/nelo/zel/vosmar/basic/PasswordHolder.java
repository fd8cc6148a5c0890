package com.nelo.zel.vosmar.basic;

import java.util.Arrays;

/** What an object remembers for its operations, each of which opens with a password, and how they fail. */
abstract class PasswordHolder implements AutoCloseable {
  private final String name;
  private final char[] password;
  private boolean closed;

  /**
   * Remembers a copy of the password.
   *
   * @param name what is opened, as messages tell it
   * @param password its password, or null to open without one
   */
  PasswordHolder(String name, char[] password) {
    this.name = name;
    this.password = copyOf(password);
  }

  /** Wipes the password. Nothing can be opened through this object any longer. */
  @Override
  public synchronized void close() {
    wipe(password);
    closed = true;
  }

  @Override
  public String toString() {
    return getClass().getSimpleName() + "[" + name + "]";
  }

  /** The password as the native methods take it. */
  final synchronized String password() {
    if (closed) {
      throw new IllegalStateException(name + " is closed");
    }
    return textOf(password);
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

  final CMSKeyDatabaseException failure(ResultCode reason) {
    return failure(reason.code());
  }

  final CMSKeyDatabaseException failure(ResultCode reason, Object what) {
    return failure(reason.code(), what);
  }

  final CMSKeyDatabaseException failure(int code) {
    return new CMSKeyDatabaseException(code, name);
  }

  final CMSKeyDatabaseException failure(int code, Object what) {
    return new CMSKeyDatabaseException(code, name + ": " + what);
  }

  static char[] copyOf(char[] secret) {
    return secret == null ? null : secret.clone();
  }

  static String textOf(char[] secret) {
    return secret == null ? null : new String(secret);
  }

  static void wipe(char[] secret) {
    if (secret != null) {
      Arrays.fill(secret, '\0');
    }
  }
}
