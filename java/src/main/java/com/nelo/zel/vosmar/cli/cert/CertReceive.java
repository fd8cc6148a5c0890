package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.options.SourceFile;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;

/** {@code vosmar cert receive}. */
@Command(name = "receive", description = "Takes in the certificate that a CA issued for a request.")
final class CertReceive extends EntryCommand {
  @Mixin private SourceFile source;

  @Option(names = "--default", description = "Make it the default key.")
  private boolean defaultKey;

  @Mixin private SecondaryDatabase secondary;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    secondary.putBeside(store);
    store.certificates().receive(source.path(), source.encoding(), defaultKey);
    out.print("received " + source.path(), Map.of("received", source.path()));
  }
}
