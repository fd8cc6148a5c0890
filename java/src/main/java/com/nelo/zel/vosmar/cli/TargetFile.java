package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.Encoding;
import java.nio.file.Path;
import picocli.CommandLine.Option;

/** A certificate file to be written. */
final class TargetFile {
  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "The file to write.")
  private Path path;

  @Option(names = "--der", description = "Write DER instead of Base64.")
  private boolean der;

  Path path() {
    return path;
  }

  Encoding encoding() {
    return der ? Encoding.DER : Encoding.BASE64;
  }
}
