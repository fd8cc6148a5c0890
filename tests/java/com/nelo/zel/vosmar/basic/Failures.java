package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.Optional;
import org.junit.jupiter.api.function.Executable;

/** Operations that have to fail. */
final class Failures {
  private Failures() {}

  static void assertFails(ResultCode reason, Executable operation) {
    assertEquals(
        Optional.of(reason), assertThrows(CMSKeyDatabaseException.class, operation).reason());
  }
}
