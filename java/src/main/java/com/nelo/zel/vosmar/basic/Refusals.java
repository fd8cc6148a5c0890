package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.internal.Answers;

/**
 * How a store says that it does not do something: with the library's code for that, and a message
 * that names what was wanted.
 */
final class Refusals {
  static final String DEFAULT_KEY = "a default key";
  static final String TRUST = "marks of trust";
  static final String REQUESTS = "pending requests";
  static final String EXTENSIONS = "extensions of a new certificate or request";
  static final String ISSUING = "issuing certificates";
  static final String RENEWING = "renewing certificates";
  static final String VALIDATING = "validating certificates";
  static final String FILES = "certificates written to files";
  static final String NEW_FILE = "a file with a certificate as it is made";
  static final String SECONDARY = "a secondary key database";

  private final Answers<CMSKeyDatabaseException> answers;
  private final ResultCode reason;

  Refusals(Answers<CMSKeyDatabaseException> answers, ResultCode reason) {
    this.answers = answers;
    this.reason = reason;
  }

  /** The exception, to be thrown. */
  CMSKeyDatabaseException of(String what) {
    return answers.failure(reason.code(), what);
  }

  /** Refuses what is one of several wishes. */
  void when(boolean wanted, String what) throws CMSKeyDatabaseException {
    if (wanted) {
      throw of(what);
    }
  }
}
