package com.nelo.zel.vosmar.cli.key;

import static java.util.Map.entry;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.basic.Labels;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.view.Json;
import com.nelo.zel.vosmar.cli.view.Output;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import picocli.CommandLine.Command;

/** {@code vosmar key list}. */
@Command(name = "list", description = "Lists the labels of keys, certificates and requests.")
final class KeyList extends EntryCommand {
  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    Labels labels = store.labels();
    String text =
        Stream.concat(
                labels.keys().stream(),
                labels.requests().stream().map(label -> label + " (pending request)"))
            .collect(Collectors.joining(System.lineSeparator()));
    out.print(
        text.isEmpty() ? "(empty)" : text,
        Json.object(entry("keys", labels.keys()), entry("requests", labels.requests())));
  }
}
