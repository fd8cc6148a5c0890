package com.nelo.zel.vosmar.cli;

import java.io.IOException;
import java.nio.file.Path;
import java.util.Map;
import java.util.stream.Stream;

/** Other programs, as judges of what was made. */
public final class Programs {
  private Programs() {}

  /**
   * A program of the JDK that runs the tests.
   *
   * @param name its name
   * @return its file
   */
  public static String jdk(String name) {
    return Path.of(System.getProperty("java.home"), "bin", name).toString();
  }

  /**
   * Runs a program that has to succeed.
   *
   * @param command the program and its arguments
   * @return its standard output and error
   * @throws IOException when it cannot be started
   * @throws InterruptedException when the wait for its end is interrupted
   */
  public static String run(Object... command) throws IOException, InterruptedException {
    return run(Map.of(), command);
  }

  static String run(Map<String, String> environment, Object... command)
      throws IOException, InterruptedException {
    ProcessBuilder builder =
        new ProcessBuilder(Stream.of(command).map(Object::toString).toList())
            .redirectErrorStream(true);
    builder.environment().putAll(environment);
    Process process = builder.start();
    process.getOutputStream().close();
    String output = new String(process.getInputStream().readAllBytes());
    int exitCode = process.waitFor();
    if (exitCode != 0) {
      throw new AssertionError(command[0] + " ended with " + exitCode + ": " + output);
    }
    return output;
  }

  /**
   * Another program, without the sanitizer's runtime that may be preloaded for this JVM and its
   * libraries: curl never ends with it.
   *
   * @param command the program and its arguments
   * @return what starts it
   */
  public static ProcessBuilder foreign(String... command) {
    ProcessBuilder builder = new ProcessBuilder(command);
    builder.environment().remove("LD_PRELOAD");
    return builder;
  }
}
