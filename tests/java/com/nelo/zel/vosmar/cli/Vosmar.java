package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.TestToken;
import com.nelo.zel.vosmar.cli.options.Secrets;
import java.io.PrintWriter;
import java.io.StringWriter;
import java.util.Map;
import java.util.stream.Stream;
import picocli.CommandLine;

/**
 * Runs the command line in this JVM, without a terminal, with passwords in variables of its own.
 */
final class Vosmar {
  static final String PASSWORD = "correct horse 1!";

  private static final Map<String, String> ENVIRONMENT =
      Map.of(
          "DB_PWD", PASSWORD,
          "WRONG_PWD", "wrong horse 1!",
          "NEW_PWD", "another horse 2!",
          "SHORT_PWD", "1!abc",
          "PFX_PWD", "pfx horse 3!",
          "PIN", TestToken.PIN,
          "NEW_PIN", "abcdef");

  private Vosmar() {}

  /** What a command left behind. */
  record Result(int exitCode, String out, String err) {}

  static Result run(Object... arguments) {
    StringWriter out = new StringWriter();
    StringWriter err = new StringWriter();
    CommandLine command =
        Main.commandLine(new Secrets(ENVIRONMENT::get, null))
            .setOut(new PrintWriter(out, true))
            .setErr(new PrintWriter(err, true));
    String[] texts = Stream.of(arguments).map(Object::toString).toArray(String[]::new);
    int exitCode = command.execute(texts);
    return new Result(exitCode, out.toString(), err.toString());
  }
}
