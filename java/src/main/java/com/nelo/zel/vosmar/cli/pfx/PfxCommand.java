package com.nelo.zel.vosmar.cli.pfx;

import picocli.CommandLine.Command;

/** {@code vosmar pfx}. */
@Command(
    name = "pfx",
    description = "Exchanges keys with other programs through PKCS#12 files.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {
      PfxExport.class,
      PfxImport.class
    })
public final class PfxCommand {
  PfxCommand() {}
}
