package com.nelo.zel.vosmar.cli;

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

  /** The exit code for a result code of the key management library. */
  static int of(int resultCode) {
    return switch (resultCode) {
      case 16, 68, 69, 70, 103, 120, 130, 131, 132, 138, 139 -> PASSWORD;
      case 87, 89, 101, 108, 117, 137, 140, 151 -> NOT_FOUND;
      case 9, 21, 23, 26, 27, 29 -> EXISTS;
      case 12, 15, 17, 18, 19, 20, 119 -> UNREADABLE;
      default -> FAILED;
    };
  }
}
