package com.nelo.zel.vosmar.cli.pfx;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.PfxFile;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar pfx export}. */
@Command(
    name = "export",
    description = "Writes entries, with their private keys and chains, to a PKCS#12 file.")
final class PfxExport extends DatabaseCommand {
  @Parameters(
      index = "1..*",
      arity = "1..*",
      paramLabel = "LABEL",
      description = "The labels of the entries.")
  private List<String> labels;

  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "The file to write.")
  private Path target;

  @Mixin private PfxPassword pfxPassword;

  @Override
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    char[] secret = pfxPassword.fresh();
    try {
      PfxFile.write(database, target, secret, labels);
    } finally {
      Arrays.fill(secret, '\0');
    }
    out.print("wrote " + target, Map.of("written", target));
  }
}
