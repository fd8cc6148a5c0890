package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.cli.Programs;
import java.io.BufferedReader;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.concurrent.TimeUnit;

/**
 * {@code openssl s_server} on a free port of this host, with the certificate and key of a PKCS#12
 * file. It serves a page to each of so many connections, then it ends by itself.
 */
final class TlsServer implements AutoCloseable {
  private static final String ACCEPTING = "ACCEPT 127.0.0.1:";

  private final Process process;
  private final int port;

  private TlsServer(Process process, int port) {
    this.process = process;
    this.port = port;
  }

  static TlsServer start(Path pfx, String password, int connections) throws IOException {
    ProcessBuilder builder =
        Programs.foreign(
            "timeout", "60", "openssl", "s_server", "-accept", "127.0.0.1:0", "-naccept",
            Integer.toString(connections), "-www", "-cert", pfx.toString(), "-pass", "env:PFX_PWD",
            // Otherwise it looks for Diffie-Hellman parameters in the file, and asks for its
            // password.
            "-no_dhe");
    builder.environment().put("PFX_PWD", password);
    Process process = builder.redirectErrorStream(true).start();
    process.getOutputStream().close();
    StringBuilder said = new StringBuilder();
    BufferedReader output = process.inputReader(StandardCharsets.UTF_8);
    for (String line = output.readLine(); line != null; line = output.readLine()) {
      if (line.startsWith(ACCEPTING)) {
        return new TlsServer(process, Integer.parseInt(line.substring(ACCEPTING.length())));
      }
      said.append(line).append('\n');
    }
    throw new IOException("openssl s_server: " + said);
  }

  String url() {
    return "https://localhost:" + port + "/";
  }

  /** Whether the server has ended by itself, for which it gets a moment. */
  boolean hasEnded() throws InterruptedException {
    return process.waitFor(10, TimeUnit.SECONDS);
  }

  @Override
  public void close() {
    process.destroyForcibly();
  }
}
