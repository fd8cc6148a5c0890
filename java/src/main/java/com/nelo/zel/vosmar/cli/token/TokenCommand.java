package com.nelo.zel.vosmar.cli.token;

import picocli.CommandLine.Command;

/** {@code vosmar token}. */
@Command(
    name = "token",
    description = {
      "Lists PKCS #11 tokens and changes their PINs.",
      "What lies on a token is worked with as in a key database: the commands that take the entries"
          + " of one take a token in its place."
    },
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {TokenList.class, TokenPasswd.class})
public final class TokenCommand {
  TokenCommand() {}
}
