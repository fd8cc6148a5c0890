package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.nelo.zel.vosmar.cli.Programs;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Stream;

/**
 * The tokens that tests make for themselves with SoftHSM, which reads at every start the file that
 * SOFTHSM2_CONF names.
 */
public final class TestToken {
  /** Their module. */
  public static final String MODULE = "/usr/lib/softhsm/libsofthsm2.so";
  /** What opens them. */
  public static final String PIN = "123456";

  /** The label of the one that every test has; its letters take up to three bytes. */
  public static final String LABEL = "T\u00f6k\u20acn";

  private static final Path CONFIGURATION = Path.of(System.getenv("SOFTHSM2_CONF"));

  private TestToken() {}

  /**
   * Puts tokens into the folder from now on; there are none yet.
   *
   * @param folder an empty folder
   * @throws IOException when it cannot be written to
   */
  public static void useFolder(Path folder) throws IOException {
    Path tokens = Files.createDirectory(folder.resolve("tokens"));
    Files.writeString(
        CONFIGURATION,
        "directories.tokendir = " + tokens + "\nobjectstore.backend = file\nlog.level = ERROR\n");
  }

  /**
   * Adds a token whose PIN is {@link #PIN}.
   *
   * @param label its label
   * @throws IOException when SoftHSM's tool is not there
   * @throws InterruptedException when the wait for it is interrupted
   */
  public static void add(String label) throws IOException, InterruptedException {
    Programs.run(
        "softhsm2-util", "--init-token", "--free", "--so-pin", "12345678", "--pin", PIN, "--label",
        label);
  }

  /** A token in the folder, open. */
  static CryptographicToken create(Path folder) throws Exception {
    useFolder(folder);
    add(LABEL);
    return open(PIN);
  }

  static void assertLabels(
      CryptographicToken token, List<String> personal, List<String> signers, List<String> requests)
      throws CMSKeyDatabaseException {
    List<String> keys = Stream.of(personal, signers).flatMap(List::stream).toList();
    assertEquals(new Labels(keys, requests), token.labels());
    assertEquals(personal, token.personalLabels());
    assertEquals(signers, token.signerLabels());
  }

  static CryptographicToken open(String pin) throws CMSKeyDatabaseException {
    return CryptographicToken.open(MODULE, LABEL, pin.toCharArray());
  }
}
