package com.nelo.zel.vosmar.cli.options;

import java.nio.file.Path;
import picocli.CommandLine.Command;
import picocli.CommandLine.Model.ArgGroupSpec;
import picocli.CommandLine.Model.CommandSpec;
import picocli.CommandLine.Model.OptionSpec;
import picocli.CommandLine.Spec;
import picocli.CommandLine.Spec.Target;

/**
 * The options that give one password: by environment variable, by file, else by prompt. They are
 * made here, since annotations could not take their names from a subclass.
 */
@Command
public abstract class PasswordOptions {
  private final Secrets secrets;
  private final String what;
  private final String option;
  private final OptionSpec variable;
  private final OptionSpec file;

  /**
   * The options are the given one with -env and -file at its end.
   *
   * @param secrets where the password comes from
   * @param option the beginning of both options
   * @param what the password as a question names it
   * @param described the password as the options' descriptions name it
   */
  protected PasswordOptions(Secrets secrets, String option, String what, String described) {
    this.secrets = secrets;
    this.what = what;
    this.option = option;
    this.variable =
        OptionSpec.builder(option + "-env")
            .type(String.class)
            .paramLabel("VARIABLE")
            .description("Take " + described + " from this environment variable.")
            .build();
    this.file =
        OptionSpec.builder(option + "-file")
            .type(Path.class)
            .paramLabel("FILE")
            .description(
                "Take " + described + " from the first line of this file; - is standard input.")
            .build();
  }

  /** Called by picocli for the command that has these options, of which one may be given. */
  @Spec(Target.MIXEE)
  private void addTo(CommandSpec command) {
    command.addArgGroup(ArgGroupSpec.builder().addArg(variable).addArg(file).build());
  }

  /** {@return whether one of the options is given} */
  public boolean given() {
    return variable.getValue() != null || file.getValue() != null;
  }

  /**
   * A password that exists already.
   *
   * @return the password, which the caller wipes
   */
  public char[] existing() {
    return read(what, false);
  }

  /**
   * A password that is made up now: a person types it twice.
   *
   * @return the password, which the caller wipes
   */
  public char[] fresh() {
    return read(what, true);
  }

  /** The same for what is called otherwise in a question. */
  final char[] read(String what, boolean confirm) {
    if (variable.getValue() != null) {
      return secrets.fromEnvironment(variable.getValue());
    }
    if (file.getValue() != null) {
      return secrets.fromFile(file.getValue());
    }
    if (!secrets.hasTerminal()) {
      throw new SecretException(
          String.format(
              "there is no terminal to ask for the %s: use %s-env or %s-file",
              what, option, option));
    }
    return secrets.fromTerminal(what, confirm);
  }
}
