package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.KMSystem;
import com.nelo.zel.vosmar.cli.options.Secrets;
import com.nelo.zel.vosmar.cli.options.SecretsFactory;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import java.io.Console;
import picocli.CommandLine;

/** The entry of the {@code vosmar} command line. */
final class Main {
  private Main() {}

  public static void main(String[] arguments) {
    Console console = System.console();
    Secrets secrets = new Secrets(System::getenv, console == null ? null : console::readPassword);
    System.exit(run(commandLine(secrets), arguments));
  }

  private static int run(CommandLine command, String... arguments) {
    try {
      return command.execute(arguments);
    } catch (UnsatisfiedLinkError noLibrary) {
      command.getErr().println("vosmar: " + noLibrary.getMessage());
      return ExitCode.FAILED;
    } finally {
      KMSystem.stop();
    }
  }

  /** The command line, ready to execute, with its secrets from the given source. */
  static CommandLine commandLine(Secrets secrets) {
    return new CommandLine(new VosmarCommand(), new SecretsFactory(secrets))
        .setCaseInsensitiveEnumValuesAllowed(true)
        .setExecutionExceptionHandler(new ErrorReport());
  }
}
