package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** A command that works on the entries of an open key database, token or certificate store. */
abstract class EntryCommand implements Callable<Integer> {
  @Parameters(
      index = "0",
      paramLabel = "DATABASE",
      description =
          "The key database file, a token such as pkcs11:token=mine?module-name=softhsm2, or a"
              + " certificate store such as store:CurrentUser/My.")
  private String named;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  @Override
  public final Integer call() throws Exception {
    try (EntryStore store = open()) {
      run(store, output);
    }
    return exitCode();
  }

  /** Does the command's work. */
  abstract void run(EntryStore store, Output out) throws Exception;

  /** How a command ends that did its work. */
  int exitCode() {
    return ExitCode.OK;
  }

  private EntryStore open() throws CMSKeyDatabaseException {
    if (TokenUri.isOne(named)) {
      return password.open(TokenUri.parse(named));
    }
    if (StoreUri.isOne(named)) {
      return password.open(StoreUri.parse(named));
    }
    return password.open(Path.of(named));
  }
}
