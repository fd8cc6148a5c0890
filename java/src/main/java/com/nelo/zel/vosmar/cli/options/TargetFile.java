package com.nelo.zel.vosmar.cli.options;

import com.nelo.zel.vosmar.basic.Encoding;
import java.nio.file.Path;
import picocli.CommandLine.Option;

/** A certificate file to be written. */
public final class TargetFile {
  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "The file to write.")
  private Path path;

  @Option(names = "--der", description = "Write DER instead of Base64.")
  private boolean der;

  TargetFile() {}

  /** {@return the file} */
  public Path path() {
    return path;
  }

  /** {@return the form that it shall have} */
  public Encoding encoding() {
    return der ? Encoding.DER : Encoding.BASE64;
  }
}
