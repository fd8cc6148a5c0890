package com.nelo.zel.vosmar.cli.pfx;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.PfxFile;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.options.SourceFile;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Arrays;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** {@code vosmar pfx import}. */
@Command(name = "import", description = "Takes in the keys and certificates of a PKCS#12 file.")
final class PfxImport extends DatabaseCommand {
  @Mixin private SourceFile source;

  @Mixin private PfxPassword pfxPassword;

  @Override
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    char[] secret = pfxPassword.existing();
    try {
      PfxFile.importInto(database, source.path(), secret);
    } finally {
      Arrays.fill(secret, '\0');
    }
    out.print("imported " + source.path(), Map.of("imported", source.path()));
  }
}
