package com.nelo.zel.vosmar.basic;

/**
 * The period of validity of a new certificate, which begins when it is made.
 *
 * @param days how long
 */
record Validity(int days) {
  static final Validity OF_A_YEAR = new Validity(365);

  Validity {
    if (days < 1) {
      throw new IllegalArgumentException("a certificate is valid for a day at least");
    }
  }
}
