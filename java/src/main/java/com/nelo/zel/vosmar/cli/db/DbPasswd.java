package com.nelo.zel.vosmar.cli.db;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.options.NewPassword;
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

/** {@code vosmar db passwd}. */
@Command(name = "passwd", description = "Changes the password of a key database.")
final class DbPasswd implements Callable<Integer> {
  @Parameters(paramLabel = "DATABASE", description = "The key database file.")
  private Path file;

  @Option(
      names = "--password-days",
      paramLabel = "DAYS",
      description = "How long the new password can be used; for ever when this is not given.")
  private long passwordDays;

  @Mixin private StorePassword password;

  @Mixin private NewPassword newPassword;

  @Mixin private Output output;

  @Override
  public Integer call() throws CMSKeyDatabaseException {
    boolean stashed = !CMSKeyDatabase.isPasswordRequired(file);
    char[] secret = password.existing();
    char[] newSecret = newPassword.fresh();
    try {
      CMSKeyDatabase.changePassword(file, secret, newSecret, Duration.ofDays(passwordDays));
    } finally {
      Arrays.fill(secret, '\0');
      Arrays.fill(newSecret, '\0');
    }
    output.print("changed the password of " + file, Map.of("changed", file));
    if (stashed) {
      output.remark(
          "the stash file still holds the old password: run 'vosmar db stash " + file + "'");
    }
    return ExitCode.OK;
  }
}
