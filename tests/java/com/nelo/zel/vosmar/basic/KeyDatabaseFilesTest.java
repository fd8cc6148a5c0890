package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_ALREADY_EXISTS;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_CORRUPTION;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_FILE_TYPE;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_PASSWORD;
import static com.nelo.zel.vosmar.basic.ResultCode.KEYDB_NOT_EXIST;
import static com.nelo.zel.vosmar.basic.ResultCode.PWD_TOO_SHORT;
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

/**
 * Creating and opening a key database, and what is told when the file or the password is not right.
 */
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
        DATABASE_INVALID_PASSWORD,
        () -> CMSKeyDatabase.open(TestDatabase.file(folder), "wrong horse 1!".toCharArray()));
  }

  @Test
  void aMissingFileIsCode101() {
    assertFails(
        KEYDB_NOT_EXIST,
        () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
    assertTrue(Files.notExists(TestDatabase.file(folder)));
  }

  @Test
  void aFileThatIsNoKeyDatabaseIsCode17() throws Exception {
    Files.writeString(TestDatabase.file(folder), "Dear diary,\n".repeat(500));

    assertFailsAndLeavesTheFile(
        DATABASE_INVALID_FILE_TYPE,
        () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
  }

  @Test
  void aDamagedFileIsCode18() throws Exception {
    TestDatabase.create(folder).close();
    truncateToHalf(TestDatabase.file(folder));

    assertFailsAndLeavesTheFile(
        DATABASE_CORRUPTION,
        () -> CMSKeyDatabase.open(TestDatabase.file(folder), TestDatabase.password()));
  }

  @Test
  void creatingOverAnExistingFileIsCode9() throws Exception {
    TestDatabase.create(folder).close();

    assertFailsAndLeavesTheFile(DATABASE_ALREADY_EXISTS, () -> TestDatabase.create(folder));
  }

  @Test
  void aShortPasswordIsCode130AndMakesNoFile() {
    assertFails(
        PWD_TOO_SHORT,
        () ->
            CMSKeyDatabase.create(
                TestDatabase.file(folder), "1!abc".toCharArray(), Duration.ZERO));
    assertTrue(Files.notExists(TestDatabase.file(folder)));
  }

  @Test
  void aFipsDatabaseAsksForALongerPassword() throws Exception {
    assertFails(
        PWD_TOO_SHORT,
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

  private void assertFailsAndLeavesTheFile(ResultCode reason, Executable operation)
      throws IOException {
    byte[] before = Files.readAllBytes(TestDatabase.file(folder));

    assertFails(reason, operation);

    assertArrayEquals(before, Files.readAllBytes(TestDatabase.file(folder)));
  }

  private static void truncateToHalf(Path file) throws IOException {
    try (RandomAccessFile access = new RandomAccessFile(file.toFile(), "rw")) {
      access.setLength(access.length() / 2);
    }
  }
}
