package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import picocli.CommandLine.Command;

/** {@code vosmar key list}. */
@Command(name = "list", description = "Lists the labels of keys, certificates and requests.")
final class KeyList extends EntryCommand {
  @Override
  void run(Entries entries, Output out) throws CMSKeyDatabaseException {
    CMSKeyDatabase.Labels labels = entries.labels();
    String text =
        Stream.concat(
                labels.keys().stream(),
                labels.requests().stream().map(label -> label + " (pending request)"))
            .collect(Collectors.joining(System.lineSeparator()));
    Map<String, Object> data = new LinkedHashMap<>();
    data.put("keys", labels.keys());
    data.put("requests", labels.requests());
    out.print(text.isEmpty() ? "(empty)" : text, data);
  }
}
