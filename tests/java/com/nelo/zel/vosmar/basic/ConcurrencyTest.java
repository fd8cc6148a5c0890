package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;
import java.util.concurrent.Callable;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Many threads on one database file, on one object and on objects of their own. */
class ConcurrencyTest {
  private static final int THREADS = 8;
  private static final int ROUNDS = 5;

  @TempDir Path folder;

  @Test
  void threadsAddAndReadEntriesWithoutLosingAny() throws Exception {
    try (CMSKeyDatabase shared = TestDatabase.create(folder)) {
      Set<String> expected = new TreeSet<>();
      List<Callable<Void>> work = new ArrayList<>();
      for (int thread = 0; thread < THREADS; thread++) {
        List<String> labels = new ArrayList<>();
        for (int round = 0; round < ROUNDS; round++) {
          labels.add("key-" + thread + "-" + round);
        }
        expected.addAll(labels);
        work.add(thread % 2 == 0 ? () -> onObject(shared, labels) : () -> onFile(labels));
      }

      ExecutorService threads = Executors.newFixedThreadPool(THREADS);
      for (Future<Void> done : threads.invokeAll(work)) {
        done.get();
      }
      threads.shutdown();

      assertEquals(expected, new TreeSet<>(shared.labels().keys()));
      assertEquals(expected.size(), shared.labels().keys().size());
    }
  }

  private static Void onObject(CMSKeyDatabase db, List<String> labels) throws Exception {
    for (String label : labels) {
      db.certificates().createSelfSigned(TestDatabase.certificate(label));
      assertEquals(label, db.key(label).label());
      assertEquals(1, db.labels().keys().stream().filter(label::equals).count());
    }
    return null;
  }

  private Void onFile(List<String> labels) throws Exception {
    for (String label : labels) {
      try (CMSKeyDatabase db =
          CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password())) {
        onObject(db, List.of(label));
      }
    }
    return null;
  }
}
