package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** A command that only a key database can do, on an open one. */
abstract class DatabaseCommand implements Callable<Integer> {
  @Parameters(index = "0", paramLabel = "DATABASE", description = "The key database file.")
  private Path file;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  @Override
  public final Integer call() throws Exception {
    try (CMSKeyDatabase database = password.open(file)) {
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
}
