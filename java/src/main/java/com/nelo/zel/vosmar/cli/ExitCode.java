package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.ResultKind;

/** The exit codes of the command line. */
final class ExitCode {
  static final int OK = 0;
  static final int FAILED = 1;
  static final int USAGE = 2;
  static final int PASSWORD = 3;
  static final int NOT_FOUND = 4;
  static final int EXISTS = 5;
  static final int UNREADABLE = 6;

  private ExitCode() {}

  /** The exit code for a failure of the key management library. */
  static int of(ResultKind kind) {
    return switch (kind) {
      case PASSWORD -> PASSWORD;
      case NOT_FOUND -> NOT_FOUND;
      case EXISTS -> EXISTS;
      case UNREADABLE -> UNREADABLE;
      default -> FAILED;
    };
  }
}
