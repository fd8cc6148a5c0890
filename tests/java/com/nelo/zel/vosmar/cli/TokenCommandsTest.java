package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.basic.TestToken;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** A token on the command line, with a CA in a key database beside it. */
class TokenCommandsTest {
  private static final String TOKEN = "pkcs11:token=mine?module-name=softhsm2";

  @TempDir Path folder;

  @BeforeEach
  void createToken() throws Exception {
    TestToken.useFolder(folder);
    TestToken.add("mine");
  }

  @Test
  void listTellsTokensAsOtherCommandsTakeThem() throws Exception {
    TestToken.add("mine");

    assertEquals(
        TOKEN + "\npkcs11:token=mine%20%282%29?module-name=softhsm2\n",
        succeed("token", "list", "softhsm2"));
    assertEquals(
        "pkcs11:token=mine?module-path=/usr/lib/softhsm/libsofthsm2.so",
        succeed("token", "list", TestToken.MODULE).lines().findFirst().orElseThrow());
    assertEquals(
        "(empty)\n", list("pkcs11:token=mine%20(2)?module-name=softhsm2", "PIN").out());
  }

  @Test
  void listTellsJsonInOneOrder() {
    assertEquals(
        "{\"tokens\":[{\"label\":\"mine\",\"uri\":\"" + TOKEN + "\"}]}\n",
        succeed("token", "list", "softhsm2", "--json"));
  }

  @Test
  void passwdChangesThePin() {
    assertEquals(
        "changed the PIN of mine\n",
        succeed(
            "token", "passwd", TOKEN, "--password-env", "PIN", "--new-password-env", "NEW_PIN"));

    assertEquals(3, list(TOKEN, "PIN").exitCode());
    assertEquals("(empty)\n", list(TOKEN, "NEW_PIN").out());
  }

  @Test
  void aKeyOnTheTokenGetsItsCertificateFromTheCa() {
    Path ca = folder.resolve("ca.kdb");
    Path root = folder.resolve("root.pem");
    Path request = folder.resolve("web.csr");
    Path certificate = folder.resolve("web.pem");
    Path renewed = folder.resolve("web.der");
    succeed("db", "create", ca, "--password-env", "DB_PWD", "--stash");
    succeed("cert", "self-sign", ca, "root", "--subject", "CN=Root", "--key", "ec:256", "-o", root);

    assertEquals(
        "wrote " + request + "\n",
        onToken(
            "cert", "request", "web", "--subject", "CN=www.example.com", "--key", "ec:256", "-o",
            request));
    assertEquals("web (pending request)\n", onToken("key", "list"));
    assertTrue(onToken("key", "show", "web", "--request").contains("pending request"));
    onToken("cert", "extract", "web", "--request", "-o", request);
    succeed("cert", "issue", ca, "root", "--request", request, "-o", certificate);
    onToken("cert", "receive", "-i", certificate, "--secondary", ca);
    onToken("cert", "add", "authority", "-i", root);

    assertEquals("web\nauthority\n", onToken("key", "list"));
    String shown = onToken("key", "show", "web");
    assertTrue(shown.contains("Subject:     CN=www.example.com\nIssuer:      CN=Root\n"), shown);
    assertTrue(shown.contains("Private key: yes\n"), shown);
    assertTrue(shown.endsWith("Issued by:   CN=Root\n"), shown);
    succeed(
        "cert", "issue", ca, "root", "--request", request, "-o", renewed, "--der", "--serial",
        "47");
    onToken("cert", "renew", "-i", renewed);
    assertTrue(onToken("key", "show", "web").contains("Serial:      2f\n"));
    onToken("cert", "extract", "web", "-o", certificate);
    assertEquals(
        certificate + " is valid\n", succeed("cert", "validate", ca, "-i", certificate));
    onToken("key", "delete", "web");
    assertEquals("authority\n", onToken("key", "list"));
  }

  @Test
  void aSelfSignedCertificateIsMade() {
    String shown =
        onToken("cert", "self-sign", "self", "--subject", "CN=self", "--key", "ec:384");

    assertTrue(shown.contains("Key size:    384\n"), shown);
    assertTrue(shown.contains("Default:     no"), shown);
  }

  @Test
  void theSecondaryDatabaseIsOpenedWithItsOwnPassword() throws Exception {
    Path secondary = folder.resolve("secondary.kdb");
    Path certificate = Files.writeString(folder.resolve("some.pem"), "");
    succeed("db", "create", secondary, "--password-env", "DB_PWD");

    assertEquals(
        "vosmar: there is no terminal to ask for the password of the secondary key database: use"
            + " --secondary-password-env or --secondary-password-file\n",
        fail(2, "cert", "receive", TOKEN, "-i", certificate, "--password-env", "PIN", "--secondary",
            secondary));
    String wrong =
        fail(3, "cert", "receive", TOKEN, "-i", certificate, "--password-env", "PIN", "--secondary",
            secondary, "--secondary-password-env", "WRONG_PWD");
    assertTrue(wrong.startsWith("vosmar: " + secondary + ": the password is wrong (16, "), wrong);
  }

  @Test
  void theReasonsOfBeingKeptOutAreTold() {
    assertEquals(
        "vosmar: softhsm2, mine: the password is wrong (16, ZELKM_ERR_DATABASE_INVALID_PASSWORD)."
            + " Mind upper and lower case; with --password-file only the first line counts.\n",
        list(TOKEN, "NEW_PIN").err());
    assertEquals(
        new Vosmar.Result(
            4,
            "",
            "vosmar: softhsm2, other: no token has this label, or no certificate store this name"
                + " (137, ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST). 'vosmar token list' shows"
                + " the tokens of a module, 'vosmar store list' the certificate stores.\n"),
        list("pkcs11:token=other?module-name=softhsm2", "PIN"));
    assertEquals(
        "vosmar: no-such, mine: the PKCS#11 module cannot be loaded (140,"
            + " ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED). Give the file of a PKCS #11"
            + " module, or the name that the configuration of p11-kit has.\n",
        list("pkcs11:token=mine?module-name=no-such", "PIN").err());
    assertEquals(
        "vosmar: there is no terminal to ask for the token PIN: use --password-env or"
            + " --password-file\n",
        fail(2, "key", "list", TOKEN));
    assertEquals(
        "vosmar: pkcs11:token=mine: name the token and its module, as in"
            + " pkcs11:token=mine?module-name=softhsm2\n",
        fail(2, "key", "list", "pkcs11:token=mine"));
  }

  @Test
  void whatATokenDoesNotDoIsTold() throws Exception {
    Path certificate = Files.writeString(folder.resolve("some.pem"), "");
    Path db = folder.resolve("some.kdb");
    succeed("db", "create", db, "--password-env", "DB_PWD", "--stash");

    assertEquals(
        "vosmar: softhsm2, mine: a default key: the token cannot do this (141,"
            + " ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT).\n",
        fail(1, "cert", "receive", TOKEN, "-i", certificate, "--default", "--password-env", "PIN"));
    assertEquals(
        "vosmar: "
            + db
            + ": a secondary key database: this is not supported (80,"
            + " ZELKM_ERR_UNSUPPORTED_OPTION).\n",
        fail(1, "cert", "receive", db, "-i", certificate, "--secondary", db));
  }

  @Test
  void noModuleIsCalledWhileTheJvmExits() throws Exception {
    // OpenSC's spy stands before the module and writes down every call.
    Path log = folder.resolve("spy.log");
    Path launcher = Path.of(System.getProperty("vosmar.test.home"), "bin", "vosmar");
    Map<String, String> environment =
        Map.of(
            "PIN_VAR", TestToken.PIN,
            "PKCS11SPY", TestToken.MODULE,
            "PKCS11SPY_OUTPUT", log.toString());

    String token = "pkcs11:token=mine?module-name=pkcs11-spy.so";
    Programs.run(environment, launcher, "key", "list", token, "--password-env", "PIN_VAR");

    List<String> calls =
        Files.readString(log).lines().filter(line -> line.matches("\\d+: C_.*")).toList();
    assertTrue(calls.stream().anyMatch(call -> call.endsWith("C_Login")), calls.toString());
    assertTrue(calls.get(calls.size() - 1).endsWith(": C_Finalize"), calls.toString());
  }

  /** Runs a command with the token behind the noun and the verb. */
  private static String onToken(Object noun, Object verb, Object... arguments) {
    Object[] all = new Object[arguments.length + 5];
    all[0] = noun;
    all[1] = verb;
    all[2] = TOKEN;
    System.arraycopy(arguments, 0, all, 3, arguments.length);
    all[arguments.length + 3] = "--password-env";
    all[arguments.length + 4] = "PIN";
    return succeed(all);
  }

  private static Vosmar.Result list(String token, String variable) {
    return Vosmar.run("key", "list", token, "--password-env", variable);
  }

  private static String succeed(Object... arguments) {
    Vosmar.Result result = Vosmar.run(arguments);
    assertEquals(0, result.exitCode(), result.err());
    return result.out();
  }

  private static String fail(int exitCode, Object... arguments) {
    Vosmar.Result result = Vosmar.run(arguments);
    assertEquals(exitCode, result.exitCode(), result.err());
    return result.err();
  }
}
