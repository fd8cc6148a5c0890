package com.nelo.zel.vosmar.cli.db;

import picocli.CommandLine.Command;

/** {@code vosmar db}. */
@Command(
    name = "db",
    description = "Creates and converts key databases and changes their passwords.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {DbCreate.class, DbPasswd.class, DbStash.class, DbConvert.class})
public final class DbCommand {
  DbCommand() {}
}
