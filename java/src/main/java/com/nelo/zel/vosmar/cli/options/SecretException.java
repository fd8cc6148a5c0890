package com.nelo.zel.vosmar.cli.options;

/** A password that could not be obtained. */
public final class SecretException extends RuntimeException {
  private static final long serialVersionUID = 1L;

  SecretException(String message) {
    super(message);
  }
}
