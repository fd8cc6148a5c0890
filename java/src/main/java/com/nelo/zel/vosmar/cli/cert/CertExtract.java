package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.options.TargetFile;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert extract}. */
@Command(name = "extract", description = "Writes a certificate, or a pending request, to a file.")
final class CertExtract extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the entry.")
  private String label;

  @Option(names = "--request", description = "Write the pending request of this label, in Base64.")
  private boolean request;

  @Mixin private TargetFile target;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    if (!request) {
      store.certificates().extract(label, target.path(), target.encoding());
    } else if (target.encoding() == Encoding.BASE64) {
      store.certificates().extractRequest(label, target.path());
    } else {
      throw new IllegalArgumentException("a request is written in Base64");
    }
    out.print("wrote " + target.path(), Map.of("written", target.path()));
  }
}
