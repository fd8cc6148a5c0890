package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
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
  private String store;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  @Override
  public final Integer call() throws Exception {
    try (Entries entries = open()) {
      run(entries, output);
    }
    return exitCode();
  }

  /** Does the command's work. */
  abstract void run(Entries entries, Output out) throws Exception;

  /** How a command ends that did its work. */
  int exitCode() {
    return ExitCode.OK;
  }

  private Entries open() throws CMSKeyDatabaseException {
    if (TokenUri.isOne(store)) {
      return new TokenEntries(password.open(TokenUri.parse(store)));
    }
    if (StoreUri.isOne(store)) {
      return new CertificateStoreEntries(password.open(StoreUri.parse(store)));
    }
    return new DatabaseEntries(password.open(Path.of(store)));
  }
}
