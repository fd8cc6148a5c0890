package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;

class KMSystemTest {
  @Test
  void strongCryptographyIsAvailable() {
    assertTrue(KMSystem.isStrongCryptographyAvailable());
  }

  @Test
  void startsAgainAfterAStop() throws CMSKeyDatabaseException {
    KMSystem.start();
    KMSystem.stop();

    assertDoesNotThrow(() -> KMSystem.start());
  }

  @Test
  void theModeIsChosenBeforeTheStart() throws CMSKeyDatabaseException {
    KMSystem.start();

    assertThrows(IllegalStateException.class, () -> KMSystem.enableFips(false));
  }
}
