package com.nelo.zel.vosmar.cli;

import picocli.CommandLine.Command;

/** {@code vosmar cert}. */
@Command(
    name = "cert",
    description = "Makes certificates and requests and writes them to files.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {
      CertSelfSign.class,
      CertRequest.class,
      CertExtract.class
    })
final class CertCommand {}
