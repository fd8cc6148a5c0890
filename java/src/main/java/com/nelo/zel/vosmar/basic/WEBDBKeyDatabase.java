package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/** A key database of the WEBDB type. */
public final class WEBDBKeyDatabase {
  private final String file;

  /**
   * Names a key database.
   *
   * @param file its file
   */
  public WEBDBKeyDatabase(Path file) {
    this.file = file.toString();
  }

  /**
   * Whether the key database asks for a password.
   *
   * @return true when it does; false also when the library cannot tell, for the reason does not
   *     reach Java
   * @throws CMSKeyDatabaseException when the library cannot be started
   */
  public boolean isPasswordRequired() throws CMSKeyDatabaseException {
    KMSystem.start();
    return c_IsPasswordRequired(file);
  }

  private native boolean c_IsPasswordRequired(String keyDbFileName);
}
