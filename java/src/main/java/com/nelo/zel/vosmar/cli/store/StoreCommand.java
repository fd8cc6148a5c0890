package com.nelo.zel.vosmar.cli.store;

import picocli.CommandLine.Command;

/** {@code vosmar store}. */
@Command(
    name = "store",
    description = {
      "Lists the user's certificate stores, those of the .NET runtime.",
      "What lies in a store is worked with as in a key database: the commands that take the entries"
          + " of one take a certificate store in its place."
    },
    synopsisSubcommandLabel = "COMMAND",
    subcommands = StoreList.class)
public final class StoreCommand {
  StoreCommand() {}
}
