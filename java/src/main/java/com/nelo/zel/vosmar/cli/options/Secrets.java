package com.nelo.zel.vosmar.cli.options;

import java.io.IOException;
import java.io.InputStream;
import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.function.UnaryOperator;

/** Where passwords come from: an environment variable, a file, or a person at a terminal. */
public final class Secrets {
  /** A terminal that asks a question and reads the answer without showing it. */
  public interface Terminal {
    /**
     * Asks a question.
     *
     * @param format the question, as {@link String#format} takes it
     * @param arguments its arguments
     * @return the answer, or null at the end of input
     */
    char[] ask(String format, Object... arguments);
  }

  private static final Path STANDARD_INPUT = Path.of("-");

  private final UnaryOperator<String> environment;
  private final Terminal terminal;

  /**
   * Takes passwords from there.
   *
   * @param environment finds the value of an environment variable, or null
   * @param terminal the terminal, or null where there is none
   */
  public Secrets(UnaryOperator<String> environment, Terminal terminal) {
    this.environment = environment;
    this.terminal = terminal;
  }

  char[] fromEnvironment(String variable) {
    String value = environment.apply(variable);
    if (value == null || value.isEmpty()) {
      throw new SecretException("the environment variable " + variable + " is not set");
    }
    return value.toCharArray();
  }

  /** The first line of a file; {@code -} is the standard input. */
  char[] fromFile(Path file) {
    byte[] bytes = null;
    try {
      bytes = readAll(file);
      char[] line = firstLine(bytes);
      if (line.length == 0) {
        throw new SecretException("the first line of " + file + " is empty");
      }
      return line;
    } catch (IOException unreadable) {
      throw new SecretException("the password file " + file + " cannot be read");
    } finally {
      if (bytes != null) {
        Arrays.fill(bytes, (byte) 0);
      }
    }
  }

  boolean hasTerminal() {
    return terminal != null;
  }

  char[] fromTerminal(String what, boolean confirm) {
    char[] answer = ask(what);
    if (confirm) {
      char[] again = ask(what + " again");
      boolean same = Arrays.equals(answer, again);
      Arrays.fill(again, '\0');
      if (!same) {
        Arrays.fill(answer, '\0');
        throw new SecretException("the two entries differ");
      }
    }
    return answer;
  }

  private char[] ask(String what) {
    char[] answer = terminal.ask("%s: ", Character.toUpperCase(what.charAt(0)) + what.substring(1));
    if (answer == null || answer.length == 0) {
      throw new SecretException("the " + what + " is empty");
    }
    return answer;
  }

  private static byte[] readAll(Path file) throws IOException {
    try (InputStream stream =
        file.equals(STANDARD_INPUT) ? System.in : Files.newInputStream(file)) {
      return stream.readAllBytes();
    }
  }

  private static char[] firstLine(byte[] bytes) {
    CharBuffer text = StandardCharsets.UTF_8.decode(ByteBuffer.wrap(bytes));
    int length = 0;
    while (length < text.length() && text.charAt(length) != '\n' && text.charAt(length) != '\r') {
      length++;
    }
    char[] line = new char[length];
    text.get(line);
    Arrays.fill(text.array(), '\0');
    return line;
  }
}
