package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class DbCommandsTest {
  @TempDir Path folder;
  private Path file;

  @BeforeEach
  void nameDatabase() {
    file = folder.resolve("server.kdb");
  }

  @Test
  void createMakesAnEmptyDatabase() {
    Vosmar.Result created = Vosmar.run("db", "create", file, "--password-env", "DB_PWD");

    assertEquals(new Vosmar.Result(0, "created " + file + "\n", ""), created);
    assertEquals("(empty)\n", list("--password-env", "DB_PWD").out());
  }

  @Test
  void createTellsJsonWhenAsked() {
    Vosmar.Result created = Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--json");

    assertEquals("{\"created\":\"" + file + "\"}\n", created.out());
  }

  @Test
  void aPasswordFileServesAsWellAsAVariable() throws Exception {
    Path secret = Files.writeString(folder.resolve("secret"), Vosmar.PASSWORD + "\n");

    assertEquals(0, Vosmar.run("db", "create", file, "--password-file", secret).exitCode());
    assertEquals(0, list("--password-env", "DB_PWD").exitCode());
  }

  @Test
  void aPasswordIsTakenFromOnePlaceOnly() {
    Vosmar.Result result =
        Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--password-file", "x");

    assertEquals(2, result.exitCode());
    assertTrue(result.err().contains("mutually exclusive"), result.err());
  }

  @Test
  void createWithStashNeedsNoPasswordAfterwards() {
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--stash");

    assertEquals(0, list().exitCode());
  }

  @Test
  void passwdChangesThePassword() {
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD");

    Vosmar.Result changed =
        Vosmar.run(
            "db", "passwd", file, "--password-env", "DB_PWD", "--new-password-env", "NEW_PWD");

    assertEquals(new Vosmar.Result(0, "changed the password of " + file + "\n", ""), changed);
    assertEquals(0, list("--password-env", "NEW_PWD").exitCode());
    assertEquals(3, list("--password-env", "DB_PWD").exitCode());
  }

  @Test
  void passwdRemarksThatTheStashFileIsOld() {
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--stash");

    Vosmar.Result changed =
        Vosmar.run(
            "db", "passwd", file, "--password-env", "DB_PWD", "--new-password-env", "NEW_PWD");

    assertEquals(
        "vosmar: the stash file still holds the old password: run 'vosmar db stash " + file + "'\n",
        changed.err());
  }

  @Test
  void stashLetsProgramsInWithoutPassword() {
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD");

    Vosmar.Result stashed = Vosmar.run("db", "stash", file, "--password-env", "DB_PWD");

    assertEquals(new Vosmar.Result(0, "stashed the password of " + file + "\n", ""), stashed);
    assertEquals(0, list().exitCode());
  }

  @Test
  void withoutStashAndTerminalAPasswordIsMissed() {
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD");

    assertEquals(
        new Vosmar.Result(
            2,
            "",
            "vosmar: there is no terminal to ask for the database password: use --password-env or"
                + " --password-file\n"),
        list());
  }

  @Test
  void convertMakesAKeyRingAndADatabaseOfIt() {
    Path ring = folder.resolve("server.kyr");
    Path back = folder.resolve("back.kdb");
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--stash");
    Vosmar.run("cert", "self-sign", file, "www", "--subject", "CN=www", "--key", "ec:256");

    assertEquals(
        new Vosmar.Result(0, "wrote " + ring + "\n", ""),
        Vosmar.run("db", "convert", file, "--out", ring, "--kyr-password-env", "PFX_PWD"));
    assertEquals(
        new Vosmar.Result(0, "{\"written\":\"" + back + "\"}\n", ""),
        Vosmar.run(
            "db", "convert", ring, "--out", back, "--kyr-password-env", "PFX_PWD",
            "--password-env", "NEW_PWD", "--json"));

    assertEquals(
        Vosmar.run("key", "show", file, "www", "--password-env", "DB_PWD"),
        Vosmar.run("key", "show", back, "www", "--password-env", "NEW_PWD"));
  }

  @Test
  void convertIsToldWhatToMakeWhereTheNameDoesNotSay() {
    Path ring = folder.resolve("ring");
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--stash");

    assertEquals(
        new Vosmar.Result(
            2, "", "vosmar: say with --to what " + ring + " shall be: kyr or kdb\n"),
        Vosmar.run("db", "convert", file, "--out", ring, "--kyr-password-env", "PFX_PWD"));
    assertEquals(
        0,
        Vosmar.run(
                "db", "convert", file, "--out", ring, "--kyr-password-env", "PFX_PWD", "--to",
                "kyr")
            .exitCode());
  }

  @Test
  void convertNeedsTheKeyRingsPassword() {
    Path ring = folder.resolve("server.kyr");
    Path back = folder.resolve("back.kdb");
    Vosmar.run("db", "create", file, "--password-env", "DB_PWD", "--stash");
    Vosmar.run("db", "convert", file, "--out", ring, "--kyr-password-env", "PFX_PWD");

    Vosmar.Result refused =
        Vosmar.run(
            "db", "convert", ring, "--out", back, "--kyr-password-env", "WRONG_PWD",
            "--password-env", "NEW_PWD");

    assertEquals(3, refused.exitCode());
    assertTrue(refused.err().contains("(120, ZELKM_ERR_PKCS12_PWD_CORRUPTION)"), refused.err());
    assertFalse(Files.exists(back));
  }

  private Vosmar.Result list(String... options) {
    Object[] arguments = new Object[options.length + 3];
    arguments[0] = "key";
    arguments[1] = "list";
    arguments[2] = file;
    System.arraycopy(options, 0, arguments, 3, options.length);
    return Vosmar.run(arguments);
  }
}
