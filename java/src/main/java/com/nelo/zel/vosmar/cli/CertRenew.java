package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** {@code vosmar cert renew}. */
@Command(name = "renew", description = "Puts a certificate in the place of the one it renews.")
final class CertRenew extends DatabaseCommand {
  @Mixin private SourceFile source;

  @Override
  void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.certificates().renew(source.certificate());
    out.print("renewed with " + source.path(), Map.of("renewed", source.path()));
  }
}
