package com.nelo.zel.vosmar.cli.key;

import picocli.CommandLine.Command;

/** {@code vosmar key}. */
@Command(
    name = "key",
    description = "Shows and changes the entries of a key database or token.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {
      KeyList.class,
      KeyShow.class,
      KeyDefault.class,
      KeyTrust.class,
      KeyDelete.class
    })
public final class KeyCommand {
  KeyCommand() {}
}
