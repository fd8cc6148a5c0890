package com.nelo.zel.vosmar.cli.key;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Parameters;

/** {@code vosmar key default}. */
@Command(name = "default", description = "Makes a key the one that is used when none is named.")
final class KeyDefault extends DatabaseCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the key.")
  private String label;

  @Override
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.setDefaultKey(label);
    out.print("the default key is " + label, Map.of("default", label));
  }
}
