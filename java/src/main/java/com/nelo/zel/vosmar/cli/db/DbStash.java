package com.nelo.zel.vosmar.cli.db;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Map;
import java.util.concurrent.Callable;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** {@code vosmar db stash}. */
@Command(
    name = "stash",
    description = "Writes the password to a stash file beside the key database, for programs.")
final class DbStash implements Callable<Integer> {
  @Parameters(paramLabel = "DATABASE", description = "The key database file.")
  private Path file;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    char[] secret = password.existing();
    try (CMSKeyDatabase database = CMSKeyDatabase.open(file, secret)) {
      database.stashPassword();
    } finally {
      Arrays.fill(secret, '\0');
    }
    output.print("stashed the password of " + file, Map.of("stashed", file));
    return ExitCode.OK;
  }
}
