package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert extract}. */
@Command(name = "extract", description = "Writes a certificate to a file.")
final class CertExtract extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the certificate.")
  private String label;

  @Mixin private TargetFile target;

  @Override
  void run(Entries entries, Output out) throws CMSKeyDatabaseException {
    entries.extract(label, target.path(), target.encoding());
    out.print("wrote " + target.path(), Map.of("written", target.path()));
  }
}
