package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.nio.file.Path;
import java.util.Arrays;
import picocli.CommandLine.ArgGroup;
import picocli.CommandLine.Option;

/** The key database beside a token, with its password. */
final class SecondaryDatabase extends PasswordOptions {
  private static final String OPTION = "--secondary-password";

  @Option(
      names = "--secondary",
      paramLabel = "FILE",
      description = "With a token: put the issuers that come along into this key database.")
  private Path database;

  @ArgGroup private Source source = new Source();

  private static final class Source {
    @Option(
        names = OPTION + "-env",
        paramLabel = "VARIABLE",
        description = "Take the password of that database from this environment variable.")
    private String variable;

    @Option(
        names = OPTION + "-file",
        paramLabel = "FILE",
        description = "Take the password of that database from the first line of this file.")
    private Path path;
  }

  SecondaryDatabase(Secrets secrets) {
    super(secrets, "password of the secondary key database", OPTION);
  }

  /** Puts the database, when one is given, beside the token. */
  void putBeside(Entries entries) throws CMSKeyDatabaseException {
    if (database == null) {
      return;
    }
    char[] secret = given() || CMSKeyDatabase.isPasswordRequired(database) ? existing() : null;
    try {
      checkThatItOpens(secret);
      entries.useSecondary(database, secret);
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

  @Override
  String environmentVariable() {
    return source.variable;
  }

  @Override
  Path file() {
    return source.path;
  }
}
