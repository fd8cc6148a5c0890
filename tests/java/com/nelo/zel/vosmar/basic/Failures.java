package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import org.junit.jupiter.api.function.Executable;

/** Operations that have to fail. */
final class Failures {
  private Failures() {}

  static void assertFails(int code, Executable operation) {
    assertEquals(code, assertThrows(CMSKeyDatabaseException.class, operation).code());
  }
}
