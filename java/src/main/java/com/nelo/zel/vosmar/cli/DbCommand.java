package com.nelo.zel.vosmar.cli;

import picocli.CommandLine.Command;

/** {@code vosmar db}. */
@Command(
    name = "db",
    description = "Creates key databases and changes their passwords.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {DbCreate.class, DbPasswd.class, DbStash.class})
final class DbCommand {}
