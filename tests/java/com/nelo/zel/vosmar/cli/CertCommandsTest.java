package com.nelo.zel.vosmar.cli;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** A CA and a server, each with a database and a stash file, on the command line. */
class CertCommandsTest {
  @TempDir Path folder;
  private Path ca;
  private Path server;

  @BeforeEach
  void createDatabases() {
    ca = folder.resolve("ca.kdb");
    server = folder.resolve("server.kdb");
    succeed("db", "create", ca, "--password-env", "DB_PWD", "--stash");
    succeed("db", "create", server, "--password-env", "DB_PWD", "--stash");
    succeed(
        "cert", "self-sign", ca, "root", "--subject", "CN=Root,O=Example", "--key", "ec:384", "-o",
        folder.resolve("root.pem"));
  }

  @Test
  void aServerGetsItsCertificateFromTheCa() {
    Path request = folder.resolve("server.csr");
    Path certificate = folder.resolve("server.pem");

    assertEquals(
        "wrote " + request + "\n",
        succeed(
            "cert", "request", server, "www", "--subject", "CN=www.example.com", "--key", "ec:256",
            "--out", request));
    assertEquals("www (pending request)\n", succeed("key", "list", server));
    assertTrue(succeed("key", "show", server, "www", "--request").contains("pending request"));

    succeed("cert", "issue", ca, "root", "--request", request, "--out", certificate);
    assertEquals(
        certificate + " is not valid\n", run(1, "cert", "validate", server, "--in", certificate));
    succeed("cert", "add", server, "root", "--in", folder.resolve("root.pem"));
    succeed("key", "trust", server, "root");
    assertEquals(
        certificate + " is valid\n", succeed("cert", "validate", server, "--in", certificate));

    succeed("cert", "receive", server, "--in", certificate, "--default");
    String shown = succeed("key", "show", server, "www");
    assertTrue(shown.contains("Issuer:      CN=Root,O=Example\n"), shown);
    assertTrue(shown.contains("Default:     yes\n"), shown);
    assertTrue(shown.endsWith("Issued by:   CN=Root,O=Example\n"), shown);
  }

  @Test
  void validateTellsJsonInOneOrder() {
    Path root = folder.resolve("root.pem");

    assertEquals(
        "{\"file\":\"" + root + "\",\"valid\":true}\n",
        succeed("cert", "validate", ca, "--in", root, "--json"));
  }

  @Test
  void aCertificateIsRenewed() {
    Path request = folder.resolve("server.csr");
    Path certificate = folder.resolve("server.pem");
    succeed(
        "cert", "request", server, "www", "--subject", "CN=www.example.com", "--key", "ec:256",
        "--out", request);
    succeed(
        "cert", "issue", ca, "root", "--request", request, "--out", certificate, "--serial", "1");
    succeed("cert", "receive", server, "--in", certificate);
    succeed(
        "cert", "issue", ca, "root", "--request", request, "--out", certificate, "--serial",
        "0x2f", "--der");

    assertEquals(
        certificate + " renews a certificate\n",
        succeed("cert", "renew", server, "--check", "--in", certificate));
    succeed("cert", "renew", server, "--in", certificate);
    assertEquals(
        certificate + " renews no certificate\n",
        run(1, "cert", "renew", server, "--check", "--in", certificate));

    assertTrue(succeed("key", "show", server, "www").contains("Serial:      2f\n"));
  }

  @Test
  void aRequestAsksForAlternativeNames() throws Exception {
    Path request = folder.resolve("server.csr");
    Path certificate = folder.resolve("server.pem");
    succeed(
        "cert", "request", server, "www", "--subject", "CN=www", "--key", "ec:256", "--san",
        "DNS:www.example.com,ip:192.0.2.1", "--out", request);
    succeed("cert", "issue", ca, "root", "--request", request, "--out", certificate);

    String shown = Programs.run("openssl", "x509", "-in", certificate, "-noout", "-text");

    assertTrue(shown.contains("DNS:www.example.com, IP Address:192.0.2.1"), shown);
  }

  @Test
  void keysTravelThroughAPfxFile() {
    Path pfx = folder.resolve("root.p12");
    succeed("pfx", "export", ca, "root", "--out", pfx, "--pfx-password-env", "PFX_PWD");

    succeed("pfx", "import", server, "--in", pfx, "--pfx-password-env", "PFX_PWD");

    assertEquals("root\n", succeed("key", "list", server));
  }

  private static String succeed(Object... arguments) {
    return run(0, arguments);
  }

  private static String run(int exitCode, Object... arguments) {
    Vosmar.Result result = Vosmar.run(arguments);
    assertEquals(exitCode, result.exitCode(), result.err());
    return result.out();
  }
}
