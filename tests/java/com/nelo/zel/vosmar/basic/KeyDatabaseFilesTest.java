package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.io.RandomAccessFile;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.api.io.TempDir;

/** Creating and opening a key database, and what is told when the file or the password is not right. */
class KeyDatabaseFilesTest {
  @TempDir Path folder;

  @Test
  void aNewDatabaseIsEmptyAndItsOwnersAlone() throws Exception {
    try (CMSKeyDatabase db = TestDatabase.create(folder)) {
      assertEquals(List.of(), db.labels().keys());
      assertEquals(List.of(), db.labels().requests());
      assertTrue(db.defaultKey().isEmpty());
    }
    assertEquals(
        PosixFilePermissions.fromString("rw-------"),
        Files.getPosixFilePermissions(TestDatabase.file(folder)));
  }

  @Test
  void aSecondProgramOpensItWithThePassword() throws Exception {
    TestDatabase.create(folder).close();

    CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()).close();
  }

  @Test
  void aWrongPasswordIsCode16() throws Exception {
    TestDatabase.create(folder).close();

    assertFailsAndLeavesTheFile(
        16, () -> CMSKeyDatabase.open(TestDatabase.file(folder), "wrong horse 1!".toCharArray()));
  }

  @Test
  void aMissingFileIsCode101() {
    assertFails(
        101, () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
    assertTrue(Files.notExists(TestDatabase.file(folder)));
  }

  @Test
  void aFileThatIsNoKeyDatabaseIsCode17() throws Exception {
    Files.writeString(TestDatabase.file(folder), "Dear diary,\n".repeat(500));

    assertFailsAndLeavesTheFile(
        17, () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
  }

  @Test
  void aDamagedFileIsCode18() throws Exception {
    TestDatabase.create(folder).close();
    truncateToHalf(TestDatabase.file(folder));

    assertFailsAndLeavesTheFile(
        18, () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
  }

  @Test
  void creatingOverAnExistingFileIsCode9() throws Exception {
    TestDatabase.create(folder).close();

    assertFailsAndLeavesTheFile(9, () -> TestDatabase.create(folder));
  }

  @Test
  void aShortPasswordIsCode130AndMakesNoFile() {
    assertFails(
        130,
        () ->
            CMSKeyDatabase.create(
                TestDatabase.file(folder), "1!abc".toCharArray(), Duration.ZERO));
    assertTrue(Files.notExists(TestDatabase.file(folder)));
  }

  @Test
  void aFipsDatabaseAsksForALongerPassword() throws Exception {
    assertFails(
        130,
        () ->
            CMSKeyDatabase.createFips(
                TestDatabase.file(folder), "1!abcdefghi".toCharArray(), Duration.ZERO));

    CMSKeyDatabase.createFips(TestDatabase.file(folder), TestDatabase.password(), Duration.ZERO)
        .close();
  }

  @Test
  void aClosedObjectIsUsedNoLonger() throws Exception {
    CMSKeyDatabase db = TestDatabase.create(folder);
    db.close();

    assertThrows(IllegalStateException.class, db::labels);
  }

  private void assertFailsAndLeavesTheFile(int code, Executable operation) throws IOException {
    byte[] before = Files.readAllBytes(TestDatabase.file(folder));

    assertFails(code, operation);

    assertArrayEquals(before, Files.readAllBytes(TestDatabase.file(folder)));
  }

  private static void truncateToHalf(Path file) throws IOException {
    try (RandomAccessFile access = new RandomAccessFile(file.toFile(), "rw")) {
      access.setLength(access.length() / 2);
    }
  }
}
