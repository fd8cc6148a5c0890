package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.concurrent.Callable;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/**
 * A command that works on an open key database. Without a password option the stash file opens it;
 * without a stash file the password is asked for.
 */
abstract class DatabaseCommand implements Callable<Integer> {
  @Parameters(index = "0", paramLabel = "DATABASE", description = "The key database file.")
  private Path file;

  @Mixin private DatabasePassword password;

  @Mixin private Output output;

  @Override
  public final Integer call() throws Exception {
    try (CMSKeyDatabase database = open()) {
      run(database, output);
    }
    return exitCode();
  }

  /** Does the command's work. */
  abstract void run(CMSKeyDatabase database, Output out) throws Exception;

  /** How a command ends that did its work. */
  int exitCode() {
    return ExitCode.OK;
  }

  private CMSKeyDatabase open() throws CMSKeyDatabaseException {
    if (!password.given() && !CMSKeyDatabase.isPasswordRequired(file)) {
      return CMSKeyDatabase.openWithStash(file);
    }
    char[] secret = password.existing();
    try {
      return CMSKeyDatabase.open(file, secret);
    } finally {
      Arrays.fill(secret, '\0');
    }
  }
}
