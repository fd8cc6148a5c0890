package com.nelo.zel.vosmar.cli.options;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Arrays;
import java.util.Deque;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class SecretsTest {
  private final Secrets noTerminal = new Secrets(Map.of("PWD_VAR", "from env")::get, null);

  @Test
  void takesAnEnvironmentVariable() {
    assertArrayEquals("from env".toCharArray(), noTerminal.fromEnvironment("PWD_VAR"));
  }

  @Test
  void anUnsetVariableIsAnError() {
    assertThrows(SecretException.class, () -> noTerminal.fromEnvironment("OTHER"));
  }

  @Test
  void takesTheFirstLineOfAFileWithoutItsEnd(@TempDir Path folder) throws Exception {
    Path file = Files.writeString(folder.resolve("password"), "gr\u00fcn \r\nsecond line\n");

    assertArrayEquals("gr\u00fcn ".toCharArray(), noTerminal.fromFile(file));
  }

  @Test
  void anEmptyOrMissingFileIsAnError(@TempDir Path folder) throws Exception {
    Path empty = Files.writeString(folder.resolve("empty"), "\nsecret\n");

    assertThrows(SecretException.class, () -> noTerminal.fromFile(empty));
    assertThrows(SecretException.class, () -> noTerminal.fromFile(folder.resolve("missing")));
  }

  @Test
  void asksOnceForAnExistingPassword() {
    assertArrayEquals(
        "one".toCharArray(), answering("one", "two").fromTerminal("database password", false));
  }

  @Test
  void asksTwiceForANewPassword() {
    assertArrayEquals(
        "one".toCharArray(), answering("one", "one").fromTerminal("database password", true));
    assertThrows(
        SecretException.class,
        () -> answering("one", "two").fromTerminal("database password", true));
  }

  @Test
  void theEndOfInputIsAnError() {
    assertThrows(SecretException.class, () -> answering().fromTerminal("PFX password", false));
  }

  private static Secrets answering(String... answers) {
    Deque<String> queue = new ArrayDeque<>(List.of(answers));
    return new Secrets(
        name -> null,
        (format, arguments) -> {
          String answer = queue.poll();
          return answer == null ? null : Arrays.copyOf(answer.toCharArray(), answer.length());
        });
  }
}
