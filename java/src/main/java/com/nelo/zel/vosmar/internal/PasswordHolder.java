package com.nelo.zel.vosmar.internal;

import java.util.Arrays;

/** The password that an object remembers for its operations, each of which opens with it. */
public final class PasswordHolder implements AutoCloseable {
  private final String name;
  private final char[] password;
  private boolean closed;

  /**
   * Remembers a copy of the password.
   *
   * @param name what is opened, as messages tell it
   * @param password its password, or null to open without one
   */
  public PasswordHolder(String name, char[] password) {
    this.name = name;
    this.password = password == null ? null : password.clone();
  }

  /**
   * The password as the native methods take it.
   *
   * @return its text, or null when there is none
   * @throws IllegalStateException when it has been wiped
   */
  public synchronized String password() {
    if (closed) {
      throw new IllegalStateException(name + " is closed");
    }
    return password == null ? null : new String(password);
  }

  /** Wipes the password. Nothing can be opened with it any longer. */
  @Override
  public synchronized void close() {
    if (password != null) {
      Arrays.fill(password, '\0');
    }
    closed = true;
  }
}
