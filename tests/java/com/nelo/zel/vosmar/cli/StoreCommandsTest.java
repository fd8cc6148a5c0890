package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.basic.TestStores;
import java.nio.file.Path;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Certificate stores on the command line. */
class StoreCommandsTest {
  private static final String MY = "store:CurrentUser/My";
  private static final String ROOT = "store:CurrentUser/Root";

  @TempDir Path folder;

  @BeforeEach
  @AfterEach
  void clear() throws Exception {
    TestStores.clear();
  }

  @Test
  void listTellsStoresAsOtherCommandsTakeThem() {
    assertEquals(MY + "\n" + ROOT + "\nstore:CurrentUser/CA\n", succeed("store", "list"));
    for (String store : succeed("store", "list").split("\n")) {
      assertEquals("(empty)\n", succeed("key", "list", store));
    }
  }

  @Test
  void entriesAreMadeShownAndDeleted() throws Exception {
    succeed("cert", "self-sign", MY, "web", "--subject", "CN=web", "--key", "ec:256");

    assertEquals("web\n", succeed("key", "list", MY));
    String shown = succeed("key", "show", MY, "web");
    assertTrue(shown.contains("Subject:     CN=web\n"), shown);
    assertTrue(shown.contains("Private key: yes\n"), shown);
    assertEquals(1, TestStores.filesIn("my").size());

    succeed("key", "delete", MY, "web");
    assertEquals("(empty)\n", succeed("key", "list", MY));
  }

  @Test
  void authoritiesAreAdded() {
    Path root = folder.resolve("root.pem");
    Path database = folder.resolve("ca.kdb");
    succeed("db", "create", database, "--password-env", "DB_PWD", "--stash");
    succeed(
        "cert", "self-sign", database, "root", "--subject", "CN=Root", "--key", "ec:256", "-o",
        root);

    succeed("cert", "add", ROOT, "authority", "-i", root);

    String shown = succeed("key", "show", ROOT, "authority");
    assertTrue(shown.contains("Private key: no\n"), shown);
    assertEquals(5, Vosmar.run("cert", "add", ROOT, "again", "-i", root).exitCode());
  }

  @Test
  void aPasswordIsRefusedAndSoIsAnotherName() {
    assertEquals(3, Vosmar.run("key", "list", MY, "--password-env", "DB_PWD").exitCode());
    assertEquals(4, Vosmar.run("key", "list", "store:CurrentUser/None").exitCode());
    assertEquals(4, Vosmar.run("key", "show", MY, "none").exitCode());
  }

  @Test
  void whatAStoreCannotDoIsSaid() {
    Path file = folder.resolve("web.csr");
    String requests = "pending requests";
    assertRefused(requests, "cert", "request", MY, "web", "--subject", "CN=web", "-o", file);
    assertRefused(requests, "cert", "extract", MY, "web", "--request", "-o", file);
    assertRefused("certificates written to files", "cert", "extract", MY, "web", "-o", file);
    assertRefused(
        "a default key", "cert", "self-sign", MY, "web", "--subject", "CN=web", "--default");
  }

  @Test
  void noRequestIsFound() {
    succeed("cert", "self-sign", MY, "web", "--subject", "CN=web", "--key", "ec:256");
    assertNotFound("web", "key", "delete", MY, "web", "--request");
    assertNotFound("web", "key", "show", MY, "web", "--request");
    assertEquals("web\n", succeed("key", "list", MY));
  }

  private static void assertNotFound(String label, Object... command) {
    assertEquals(
        new Vosmar.Result(
            4,
            "",
            "vosmar: CurrentUser/My: "
                + label
                + ": nothing has this label (117, ZELKM_ERR_KEY_GET_BY_LABEL). 'vosmar key list'"
                + " shows the labels.\n"),
        Vosmar.run(command));
  }

  private static void assertRefused(String what, Object... command) {
    assertEquals(
        new Vosmar.Result(
            1,
            "",
            "vosmar: CurrentUser/My: "
                + what
                + ": this is not supported (80, ZELKM_ERR_UNSUPPORTED_OPTION).\n"),
        Vosmar.run(command));
  }

  private static String succeed(Object... command) {
    Vosmar.Result result = Vosmar.run(command);
    assertEquals(0, result.exitCode(), result.err());
    return result.out();
  }
}
