package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Failures name the file, the reason, the code with its name, and what to try. */
class ErrorMessagesTest {
  @TempDir Path folder;
  private Path file;

  @BeforeEach
  void nameDatabase() {
    file = folder.resolve("server.kdb");
  }

  @Test
  void aWrongPassword() {
    create();

    assertEquals(
        new Vosmar.Result(
            3,
            "",
            "vosmar: "
                + file
                + ": the password is wrong (16, ZELKM_ERR_DATABASE_INVALID_PASSWORD). Mind upper"
                + " and lower case; with --password-file only the first line counts.\n"),
        Vosmar.run("key", "list", file, "--password-env", "WRONG_PWD"));
  }

  @Test
  void aMissingFile() {
    assertEquals(
        new Vosmar.Result(
            4,
            "",
            "vosmar: "
                + file
                + ": the key database does not exist (101, ZELKM_ERR_KEYDB_NOT_EXIST). Check the"
                + " name, or make the key database with 'vosmar db create'.\n"),
        Vosmar.run("key", "list", file, "--password-env", "DB_PWD"));
  }

  @Test
  void aFileThatIsNoKeyDatabase() throws Exception {
    Files.writeString(file, "Dear diary,\n".repeat(500));

    assertEquals(
        new Vosmar.Result(
            6,
            "",
            "vosmar: "
                + file
                + ": the file is no key database (17, ZELKM_ERR_DATABASE_INVALID_FILE_TYPE). Give"
                + " the name of a file made by 'vosmar db create'.\n"),
        Vosmar.run("key", "list", file, "--password-env", "DB_PWD"));
  }

  @Test
  void aDamagedFile() throws Exception {
    create();
    byte[] bytes = Files.readAllBytes(file);
    Files.write(file, Arrays.copyOf(bytes, bytes.length / 2));

    assertEquals(
        new Vosmar.Result(
            6,
            "",
            "vosmar: "
                + file
                + ": the key database is damaged (18, ZELKM_ERR_DATABASE_CORRUPTION). The file was"
                + " left as it is. Restore it from a backup.\n"),
        Vosmar.run("key", "list", file, "--password-env", "DB_PWD"));
  }

  @Test
  void anExistingFile() {
    create();

    assertEquals(
        new Vosmar.Result(
            5,
            "",
            "vosmar: "
                + file
                + ": the file exists already (9, ZELKM_ERR_DATABASE_ALREADY_EXISTS). Choose"
                + " another name; vosmar never overwrites a key database or key ring.\n"),
        Vosmar.run("db", "create", file, "--password-env", "DB_PWD"));
  }

  @Test
  void anUnknownLabel() {
    create();

    Vosmar.Result result =
        Vosmar.run("key", "show", file, "server", "--password-env", "DB_PWD");

    assertEquals(4, result.exitCode());
    assertEquals(
        "vosmar: "
            + file
            + ": server: nothing has this label (117, ZELKM_ERR_KEY_GET_BY_LABEL)."
            + " 'vosmar key list' shows the labels.\n",
        result.err());
  }

  @Test
  void jsonHasThePartsOneByOne() {
    create();

    Vosmar.Result result =
        Vosmar.run("key", "list", file, "--password-env", "WRONG_PWD", "--json");

    assertEquals(3, result.exitCode());
    assertTrue(
        result
            .err()
            .startsWith(
                "{\"error\":{\"code\":16,\"name\":\"ZELKM_ERR_DATABASE_INVALID_PASSWORD\","
                    + "\"subject\":\""
                    + file
                    + "\",\"message\":"),
        result.err());
  }

  @Test
  void aWrongCommandLineShowsTheUsage() {
    Vosmar.Result result = Vosmar.run("key", "show");

    assertEquals(2, result.exitCode());
    assertTrue(result.err().startsWith("Missing required parameters: 'DATABASE', 'LABEL'\nUsage:"));
  }

  private void create() {
    assertEquals(0, Vosmar.run("db", "create", file, "--password-env", "DB_PWD").exitCode());
  }
}
