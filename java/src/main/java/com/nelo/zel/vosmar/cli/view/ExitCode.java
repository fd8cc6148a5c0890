package com.nelo.zel.vosmar.cli.view;

import com.nelo.zel.vosmar.basic.ResultKind;

/** The exit codes of the command line. */
public final class ExitCode {
  /** Done. */
  public static final int OK = 0;

  /** Failed for a reason that the message tells. */
  public static final int FAILED = 1;

  /** The command line is wrong, or a password is not to be had. */
  public static final int USAGE = 2;

  /** A password is wrong, past its lifetime, or refused. */
  public static final int PASSWORD = 3;

  /** A file or label does not exist. */
  public static final int NOT_FOUND = 4;

  /** A file or label exists already. */
  public static final int EXISTS = 5;

  /** A file is damaged, or of another kind. */
  public static final int UNREADABLE = 6;

  private ExitCode() {}

  /**
   * The exit code for a failure of the key management library.
   *
   * @param kind the kind of the failure
   * @return the code
   */
  public static int of(ResultKind kind) {
    return switch (kind) {
      case PASSWORD -> PASSWORD;
      case NOT_FOUND -> NOT_FOUND;
      case EXISTS -> EXISTS;
      case UNREADABLE -> UNREADABLE;
      default -> FAILED;
    };
  }
}
