package com.nelo.zel.vosmar.cli.key;

import static java.util.Map.entry;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.view.Json;
import com.nelo.zel.vosmar.cli.view.Output;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar key trust}. */
@Command(name = "trust", description = "Lets chains of certificates end at this one, or no longer.")
final class KeyTrust extends DatabaseCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the certificate.")
  private String label;

  @Option(names = "--off", description = "Trust it no longer.")
  private boolean off;

  @Override
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.setTrusted(label, !off);
    out.print(
        label + (off ? " is trusted no longer" : " is trusted"),
        Json.object(entry("label", label), entry("trusted", !off)));
  }
}
