package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.options.SourceFile;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;

/** {@code vosmar cert renew}. */
@Command(name = "renew", description = "Puts a certificate in the place of the one it renews.")
final class CertRenew extends EntryCommand {
  @Mixin private SourceFile source;

  @Option(names = "--check", description = "Only tell whether the certificate renews one.")
  private boolean check;

  private boolean renews = true;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    if (check) {
      renews = store.certificates().isRenewal(source.certificate());
      out.print(
          source.path() + (renews ? " renews a certificate" : " renews no certificate"),
          Map.of("file", source.path(), "renews", renews));
      return;
    }
    store.certificates().renew(source.certificate());
    out.print("renewed with " + source.path(), Map.of("renewed", source.path()));
  }

  @Override
  protected int exitCode() {
    return renews ? ExitCode.OK : ExitCode.FAILED;
  }
}
