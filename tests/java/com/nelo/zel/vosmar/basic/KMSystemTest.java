package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTO_UNSUPPORTED_ALGORITHM;
import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class KMSystemTest {
  @TempDir Path folder;

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

  /** The mode is that of the whole process, so the test takes it back. */
  @Test
  void theFipsModeRefusesKeysThatAreNotApproved() throws Exception {
    var ed25519 =
        new SelfSignedCertificate("key", DNItem.parse("CN=key"), KeyType.parse("ed25519"));
    try (CMSKeyDatabase db = TestDatabase.create(folder)) {
      assertEquals(0, call("c_enableFIPSMode", true, false));
      try {
        assertFails(
            CRYPTO_UNSUPPORTED_ALGORITHM, () -> db.certificates().createSelfSigned(ed25519));
      } finally {
        call("c_enableFIPSMode", false, false);
      }
      assertDoesNotThrow(() -> db.certificates().createSelfSigned(ed25519));
    }
  }

  @Test
  void theLibraryMayBeStartedMoreThanOnce() throws Exception {
    KMSystem.start();

    assertEquals(0, call("c_ZELKMInit", false));
  }

  @Test
  void theVersionIsPrinted() throws Exception {
    KMSystem.start();

    int charactersPrinted = (int) call("c_ShowLibInfo");

    assertTrue(charactersPrinted > "KJNI".length());
  }

  private static Object call(String name, Object... arguments)
      throws ReflectiveOperationException {
    return Natives.call(null, KMSystem.class, name, arguments);
  }
}
