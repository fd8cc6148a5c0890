package com.nelo.zel.vosmar.cli.db;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.time.Duration;
import java.util.Arrays;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar db create}. */
@Command(name = "create", description = "Creates an empty key database.")
final class DbCreate implements Callable<Integer> {
  @Parameters(paramLabel = "DATABASE", description = "The file to create.")
  private Path file;

  @Option(names = "--fips", description = "Accept approved algorithms and key sizes only.")
  private boolean fips;

  @Option(names = "--stash", description = "Write the stash file as well.")
  private boolean stash;

  @Option(
      names = "--password-days",
      paramLabel = "DAYS",
      description = "How long the password can be used; for ever when this is not given.")
  private long passwordDays;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    char[] secret = password.fresh();
    Duration lifetime = Duration.ofDays(passwordDays);
    try (CMSKeyDatabase database =
        fips
            ? CMSKeyDatabase.createFips(file, secret, lifetime)
            : CMSKeyDatabase.create(file, secret, lifetime)) {
      if (stash) {
        database.stashPassword();
      }
    } finally {
      Arrays.fill(secret, '\0');
    }
    output.print("created " + file, Map.of("created", file));
    return ExitCode.OK;
  }
}
