package com.nelo.zel.vosmar.cli.view;

import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Option;
import picocli.CommandLine.Spec;
import picocli.CommandLine.Spec.Target;

/** What a command tells: text for people, or JSON for programs. */
public final class Output {
  /** The option that asks for JSON. */
  public static final String JSON_OPTION = "--json";

  @Spec(Target.MIXEE)
  private CommandSpec command;

  @Option(names = JSON_OPTION, description = "Write the result, or the error, as JSON.")
  private boolean json;

  Output() {}

  /**
   * Tells a result.
   *
   * @param text the result for people
   * @param data the same for programs, as {@link Json} writes it
   */
  public void print(String text, Object data) {
    command.commandLine().getOut().println(json ? Json.write(data) : text);
  }

  /**
   * Tells something that a person should know and that is no result.
   *
   * @param text a sentence without a full stop
   */
  public void remark(String text) {
    command.commandLine().getErr().println("vosmar: " + text);
  }
}
