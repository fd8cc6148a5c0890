package com.nelo.zel.vosmar.cli.cert;

import picocli.CommandLine.Command;

/** {@code vosmar cert}. */
@Command(
    name = "cert",
    description = "Makes, issues, takes in and hands out certificates.",
    synopsisSubcommandLabel = "COMMAND",
    subcommands = {
      CertSelfSign.class,
      CertRequest.class,
      CertIssue.class,
      CertReceive.class,
      CertAdd.class,
      CertRenew.class,
      CertValidate.class,
      CertExtract.class
    })
public final class CertCommand {
  CertCommand() {}
}
