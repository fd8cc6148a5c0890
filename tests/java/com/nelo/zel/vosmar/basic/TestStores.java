package com.nelo.zel.vosmar.basic;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Comparator;
import java.util.List;
import java.util.stream.Stream;

/** The certificate stores in the home folder that the tests run with. */
public final class TestStores {
  private static final Path HOME = temporary(Path.of(System.getenv("HOME")));
  private static final Path DOTNET = HOME.resolve(".dotnet");
  private static final Path STORES =
      DOTNET.resolve(Path.of("corefx", "cryptography", "x509stores"));

  private TestStores() {}

  /**
   * Takes all stores away.
   *
   * @throws IOException when they cannot be removed
   */
  public static void clear() throws IOException {
    if (!Files.exists(DOTNET)) {
      return;
    }
    try (Stream<Path> files = Files.walk(DOTNET)) {
      for (Path file : files.sorted(Comparator.reverseOrder()).toList()) {
        Files.delete(file);
      }
    }
  }

  /**
   * The names of the files of a store.
   *
   * @param folder the name of its folder
   * @return the names, in no order
   * @throws IOException when there is no such folder
   */
  public static List<String> filesIn(String folder) throws IOException {
    try (Stream<Path> files = Files.list(STORES.resolve(folder))) {
      return files.map(file -> file.getFileName().toString()).toList();
    }
  }

  /**
   * The stores of a user must not be taken away by running the tests in another way than ctest
   * does.
   */
  private static Path temporary(Path home) {
    if (!home.startsWith(System.getProperty("java.io.tmpdir"))) {
      throw new IllegalStateException(home + " is not a home folder made for tests");
    }
    return home;
  }
}
