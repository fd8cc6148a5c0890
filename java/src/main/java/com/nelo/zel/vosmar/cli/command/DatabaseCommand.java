package com.nelo.zel.vosmar.cli.command;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** A command that only a key database can do, on an open one. */
public abstract class DatabaseCommand implements Callable<Integer> {
  @Parameters(index = "0", paramLabel = "DATABASE", description = "The key database file.")
  private Path file;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  /** For the commands of the nouns. */
  protected DatabaseCommand() {}

  @Override
  public final Integer call() throws Exception {
    try (CMSKeyDatabase database = password.open(file)) {
      run(database, output);
    }
    return exitCode();
  }

  /**
   * Does the command's work.
   *
   * @param database the open key database
   * @param out takes the result
   * @throws Exception when it fails
   */
  protected abstract void run(CMSKeyDatabase database, Output out) throws Exception;

  /**
   * How a command ends that did its work.
   *
   * @return {@link ExitCode#OK} unless it says otherwise
   */
  protected int exitCode() {
    return ExitCode.OK;
  }
}
