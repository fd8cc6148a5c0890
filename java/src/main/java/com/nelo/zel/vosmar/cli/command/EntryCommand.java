package com.nelo.zel.vosmar.cli.command;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.options.CertificateStoreUri;
import com.nelo.zel.vosmar.cli.options.StorePassword;
import com.nelo.zel.vosmar.cli.options.TokenUri;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.concurrent.Callable;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** A command that works on the entries of an open key database, token or certificate store. */
public abstract class EntryCommand implements Callable<Integer> {
  @Parameters(
      index = "0",
      paramLabel = "DATABASE",
      description =
          "The key database file, a token such as pkcs11:token=mine?module-name=softhsm2, or a"
              + " certificate store such as store:CurrentUser/My.")
  private String named;

  @Mixin private StorePassword password;

  @Mixin private Output output;

  /** For the commands of the nouns. */
  protected EntryCommand() {}

  @Override
  public final Integer call() throws Exception {
    try (EntryStore store = open()) {
      run(store, output);
    }
    return exitCode();
  }

  /**
   * Does the command's work.
   *
   * @param store the open key database, token or certificate store
   * @param out takes the result
   * @throws Exception when it fails
   */
  protected abstract void run(EntryStore store, Output out) throws Exception;

  /**
   * How a command ends that did its work.
   *
   * @return {@link ExitCode#OK} unless it says otherwise
   */
  protected int exitCode() {
    return ExitCode.OK;
  }

  private EntryStore open() throws CMSKeyDatabaseException {
    if (TokenUri.isOne(named)) {
      return password.open(TokenUri.parse(named));
    }
    if (CertificateStoreUri.isOne(named)) {
      return password.open(CertificateStoreUri.parse(named));
    }
    return password.open(Path.of(named));
  }
}
