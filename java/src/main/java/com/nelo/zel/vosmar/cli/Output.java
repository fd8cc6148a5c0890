package com.nelo.zel.vosmar.cli;

import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Spec;
import picocli.CommandLine.Spec.Target;

/** What a command tells: text for people, or JSON for programs. */
final class Output {
  static final String JSON_OPTION = "--json";

  @Spec(Target.MIXEE)
  private CommandSpec command;

  @Option(names = JSON_OPTION, description = "Write the result, or the error, as JSON.")
  private boolean json;

  void print(String text, Object data) {
    command.commandLine().getOut().println(json ? Json.write(data) : text);
  }

  /** Something a person should know that is no result. */
  void remark(String text) {
    command.commandLine().getErr().println("vosmar: " + text);
  }
}
