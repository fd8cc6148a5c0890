package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_ALREADY_EXISTS;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** A whole database on its way through a key ring file. */
class KeyRingTest {
  private static final char[] RING_PASSWORD = "ring horse 5!".toCharArray();

  @TempDir Path folder;

  @Test
  void aDatabaseComesBackOutOfAKeyRing() throws Exception {
    Path ring = folder.resolve("keys.kyr");
    Path copyFile = folder.resolve("copy.kdb");
    try (CMSKeyDatabase db = TestDatabase.create(folder)) {
      db.certificates().createSelfSigned(TestDatabase.certificate("alpha"));
      db.certificates().createSelfSigned(TestDatabase.certificate("beta").asDefaultKey());

      KeyRingFile.write(db, ring, RING_PASSWORD);

      try (CMSKeyDatabase copy =
          KeyRingFile.toKeyDatabase(
              ring, RING_PASSWORD, copyFile, TestDatabase.password())) {
        assertEquals(db.labels().keys(), copy.labels().keys());
        assertEquals("beta", copy.defaultKey().orElseThrow().label());
        assertTrue(copy.key("alpha").hasPrivateKey());
        assertArrayEquals(
            db.key("alpha").certificate().der(), copy.key("alpha").certificate().der());
      }
    }
    assertFails(
        DATABASE_ALREADY_EXISTS,
        () ->
            KeyRingFile.toKeyDatabase(
                ring, RING_PASSWORD, copyFile, TestDatabase.password()));
  }
}
