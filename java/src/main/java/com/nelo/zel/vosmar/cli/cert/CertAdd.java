package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.options.SourceFile;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert add}. */
@Command(name = "add", description = "Adds the certificate of a CA.")
final class CertAdd extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the new entry.")
  private String label;

  @Mixin private SourceFile source;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    store.certificates().add(label, source.path(), source.encoding());
    out.print("added " + label, Map.of("added", label));
  }
}
