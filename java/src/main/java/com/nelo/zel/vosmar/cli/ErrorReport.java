package com.nelo.zel.vosmar.cli;

import static java.util.Map.entry;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.options.SecretException;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Json;
import com.nelo.zel.vosmar.cli.view.Output;
import java.io.PrintWriter;
import java.util.Map;
import picocli.CommandLine;
import picocli.CommandLine.IExecutionExceptionHandler;
import picocli.CommandLine.ParseResult;

/** Tells a failure in one line on standard error and turns it into an exit code. */
final class ErrorReport implements IExecutionExceptionHandler {
  @Override
  public int handleExecutionException(
      Exception failure, CommandLine command, ParseResult arguments) throws Exception {
    PrintWriter err = command.getErr();
    boolean json = command.getParseResult().hasMatchedOption(Output.JSON_OPTION);
    if (failure instanceof CMSKeyDatabaseException ofLibrary) {
      err.println(json ? Json.write(Map.of("error", data(ofLibrary))) : text(ofLibrary));
      return ExitCode.of(ofLibrary.kind());
    }
    if (failure instanceof SecretException || failure instanceof IllegalArgumentException) {
      String message = failure.getMessage();
      err.println(
          json ? Json.write(Map.of("error", Map.of("message", message))) : "vosmar: " + message);
      return ExitCode.USAGE;
    }
    throw failure;
  }

  private static String text(CMSKeyDatabaseException failure) {
    return ("vosmar: " + failure.getMessage() + ". " + advice(failure)).strip();
  }

  private static String advice(CMSKeyDatabaseException failure) {
    return failure.reason().map(Advice::of).orElse("");
  }

  private static Map<String, Object> data(CMSKeyDatabaseException failure) {
    return Json.object(
        entry("code", failure.code()),
        entry("name", failure.codeName()),
        entry("subject", failure.subject()),
        entry("message", failure.getMessage()),
        entry("advice", advice(failure)));
  }
}
