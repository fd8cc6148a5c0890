package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** {@code vosmar cert renew}. */
@Command(name = "renew", description = "Puts a certificate in the place of the one it renews.")
final class CertRenew extends EntryCommand {
  @Mixin private SourceFile source;

  @Override
  void run(Entries entries, Output out) throws CMSKeyDatabaseException {
    entries.renew(source.certificate());
    out.print("renewed with " + source.path(), Map.of("renewed", source.path()));
  }
}
