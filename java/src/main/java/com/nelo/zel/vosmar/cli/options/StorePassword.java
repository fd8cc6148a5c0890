package com.nelo.zel.vosmar.cli.options;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CryptographicToken;
import com.nelo.zel.vosmar.basic.MSCertificateStore;
import java.nio.file.Path;
import java.util.Arrays;

/** The password of the key database, or the PIN of the token, that a command works on. */
public final class StorePassword extends PasswordOptions {
  StorePassword(Secrets secrets) {
    super(secrets, "--password", "database password", "the password, or the PIN of a token,");
  }

  /**
   * Opens a key database. Without a password option the stash file opens it; without a stash file
   * the password is asked for.
   *
   * @param file the file
   * @return the database, which the caller closes
   * @throws CMSKeyDatabaseException when it cannot be opened
   */
  public CMSKeyDatabase open(Path file) throws CMSKeyDatabaseException {
    if (!given() && !CMSKeyDatabase.isPasswordRequired(file)) {
      return CMSKeyDatabase.openWithStash(file);
    }
    char[] secret = existing();
    try {
      return CMSKeyDatabase.open(file, secret);
    } finally {
      Arrays.fill(secret, '\0');
    }
  }

  /**
   * Opens a token. Without a password option the PIN is asked for, unless the token takes none.
   *
   * @param uri its name
   * @return the token, which the caller closes
   * @throws CMSKeyDatabaseException when it cannot be opened
   */
  public CryptographicToken open(TokenUri uri) throws CMSKeyDatabaseException {
    if (!given() && !CryptographicToken.isPasswordRequired(uri.module(), uri.label())) {
      return CryptographicToken.open(uri.module(), uri.label(), null);
    }
    char[] secret = pin();
    try {
      return CryptographicToken.open(uri.module(), uri.label(), secret);
    } finally {
      Arrays.fill(secret, '\0');
    }
  }

  /**
   * Opens a certificate store, which has no password and refuses one that is given.
   *
   * @param uri its name
   * @return the store, which the caller closes
   * @throws CMSKeyDatabaseException when it cannot be opened
   */
  public MSCertificateStore open(CertificateStoreUri uri) throws CMSKeyDatabaseException {
    char[] secret = given() ? existing() : new char[0];
    try {
      return MSCertificateStore.open(uri.name(), secret);
    } finally {
      Arrays.fill(secret, '\0');
    }
  }

  /**
   * The PIN that a token has.
   *
   * @return the PIN, which the caller wipes
   */
  public char[] pin() {
    return read("token PIN", false);
  }
}
