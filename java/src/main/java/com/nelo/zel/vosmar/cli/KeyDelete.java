package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
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
  void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    if (request) {
      store.deleteRequest(label);
    } else {
      store.deleteKey(label);
    }
    out.print("deleted " + label, Map.of("deleted", label));
  }
}
