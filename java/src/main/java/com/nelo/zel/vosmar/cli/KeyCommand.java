package com.nelo.zel.vosmar.cli;

import picocli.CommandLine.Command;

/** {@code vosmar key}. */
@Command(
    name = "key",
    description = "Shows what is in a key database.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {KeyList.class, KeyShow.class})
final class KeyCommand {}
