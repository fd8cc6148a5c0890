package com.nelo.zel.vosmar.cli.key;

import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.basic.KeyItem;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.view.KeyView;
import com.nelo.zel.vosmar.cli.view.Output;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar key show}. */
@Command(name = "show", description = "Shows an entry.")
final class KeyShow extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the entry.")
  private String label;

  @Option(names = "--request", description = "Show the pending request of this label.")
  private boolean request;

  @Override
  protected void run(EntryStore store, Output out) throws Exception {
    KeyItem item = request ? store.request(label) : store.key(label);
    KeyView view = KeyView.of(item);
    out.print(view.text(), view.data());
  }
}
