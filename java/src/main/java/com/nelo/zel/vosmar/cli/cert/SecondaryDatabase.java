package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.options.PasswordOptions;
import com.nelo.zel.vosmar.cli.options.Secrets;
import java.nio.file.Path;
import java.util.Arrays;
import picocli.CommandLine.Option;

/** The key database beside a token, with its password. */
final class SecondaryDatabase extends PasswordOptions {
  @Option(
      names = "--secondary",
      paramLabel = "FILE",
      description = "With a token: put the issuers that come along into this key database.")
  private Path database;

  SecondaryDatabase(Secrets secrets) {
    super(
        secrets,
        "--secondary-password",
        "password of the secondary key database",
        "the password of that database");
  }

  /** Puts the database, when one is given, beside the token. */
  void putBeside(EntryStore store) throws CMSKeyDatabaseException {
    if (database == null) {
      return;
    }
    char[] secret = given() || CMSKeyDatabase.isPasswordRequired(database) ? existing() : null;
    try {
      checkThatItOpens(secret);
      store.useSecondaryKeyDatabase(database, secret);
    } finally {
      if (secret != null) {
        Arrays.fill(secret, '\0');
      }
    }
  }

  /** So that its failure is not told as one of the token. */
  private void checkThatItOpens(char[] secret) throws CMSKeyDatabaseException {
    try (CMSKeyDatabase opened =
        secret == null
            ? CMSKeyDatabase.openWithStash(database)
            : CMSKeyDatabase.open(database, secret)) {
      opened.labels();
    }
  }
}
