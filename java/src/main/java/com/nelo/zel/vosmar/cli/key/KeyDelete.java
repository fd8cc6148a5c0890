package com.nelo.zel.vosmar.cli.key;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar key delete}. */
@Command(name = "delete", description = "Deletes an entry for good.")
final class KeyDelete extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the entry.")
  private String label;

  @Option(names = "--request", description = "Delete the pending request of this label.")
  private boolean request;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    if (request) {
      store.deleteRequest(label);
    } else {
      store.deleteKey(label);
    }
    out.print("deleted " + label, Map.of("deleted", label));
  }
}
