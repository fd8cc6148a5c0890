package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.KMSystem;
import java.io.Console;
import picocli.CommandLine;

/** The entry of the {@code vosmar} command line. */
final class Main {
  private Main() {}

  public static void main(String[] arguments) {
    Console console = System.console();
    Secrets secrets = new Secrets(System::getenv, console == null ? null : console::readPassword);
    int exitCode = commandLine(secrets).execute(arguments);
    KMSystem.stop();
    System.exit(exitCode);
  }

  /** The command line, ready to execute, with its secrets from the given source. */
  static CommandLine commandLine(Secrets secrets) {
    return new CommandLine(new VosmarCommand(), new SecretsFactory(secrets))
        .setCaseInsensitiveEnumValuesAllowed(true)
        .setExecutionExceptionHandler(new ErrorReport());
  }
}
