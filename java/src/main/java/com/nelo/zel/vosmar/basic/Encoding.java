package com.nelo.zel.vosmar.basic;

/** How a certificate or request stands in a file. */
public enum Encoding {
  /** The bytes themselves. */
  DER,
  /** Text between BEGIN and END lines, as RFC&nbsp;7468 has it. */
  BASE64;

  boolean isBase64() {
    return this == BASE64;
  }
}
