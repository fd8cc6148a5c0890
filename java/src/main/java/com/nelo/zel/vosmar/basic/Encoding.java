package com.nelo.zel.vosmar.basic;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;

/** How a certificate or request stands in a file. */
public enum Encoding {
  /** The bytes themselves. */
  DER,
  /** Text between BEGIN and END lines, as RFC&nbsp;7468 has it. */
  BASE64;

  private static final int DER_SEQUENCE = 0x30;

  /**
   * Tells the form of a file from its first byte.
   *
   * @param file a file with a certificate, request or bundle
   * @return DER when it begins as such things do, else Base64
   * @throws IOException when the file cannot be read
   */
  public static Encoding of(Path file) throws IOException {
    try (InputStream stream = Files.newInputStream(file)) {
      return stream.read() == DER_SEQUENCE ? DER : BASE64;
    }
  }

  boolean isBase64() {
    return this == BASE64;
  }
}
