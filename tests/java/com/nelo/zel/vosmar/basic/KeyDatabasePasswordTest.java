package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_PASSWORD;
import static com.nelo.zel.vosmar.basic.ResultCode.KEYDB_NOT_EXIST;
import static com.nelo.zel.vosmar.basic.ResultCode.PASSWORD_EXPIRATION_TIME;
import static com.nelo.zel.vosmar.basic.ResultCode.PWDFILE_NOT_EXIST;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Changing, stashing and outliving the password of a key database. */
class KeyDatabasePasswordTest {
  private static final String NEW_PASSWORD = "another horse 2!";

  @TempDir Path folder;
  private Path file;

  @BeforeEach
  void createDatabase() throws CMSKeyDatabaseException {
    file = TestDatabase.file(folder);
    TestDatabase.create(folder).close();
  }

  @Test
  void aChangedPasswordOpensAndTheOldOneDoesNot() throws Exception {
    change(TestDatabase.password(), NEW_PASSWORD);

    CMSKeyDatabase.open(file, NEW_PASSWORD.toCharArray()).close();
    assertFails(
        DATABASE_INVALID_PASSWORD, () -> CMSKeyDatabase.open(file, TestDatabase.password()));
  }

  @Test
  void entriesOutliveAChangeOfThePassword() throws Exception {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, TestDatabase.password())) {
      db.certificates().createSelfSigned(TestDatabase.certificate("server"));
    }

    change(TestDatabase.password(), NEW_PASSWORD);

    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, NEW_PASSWORD.toCharArray())) {
      assertEquals(List.of("server"), db.labels().keys());
      assertTrue(db.key("server").hasPrivateKey());
    }
  }

  @Test
  void aWrongOldPasswordIsCode16() {
    assertFails(
        DATABASE_INVALID_PASSWORD, () -> change("wrong horse 1!".toCharArray(), NEW_PASSWORD));
  }

  @Test
  void aNewPasswordThatIsTooShortIsCode69() {
    assertFails(ResultCode.NEW_PASSWORD, () -> change(TestDatabase.password(), "1!abc"));
  }

  @Test
  void aStashedPasswordOpensTheDatabase() throws Exception {
    assertTrue(CMSKeyDatabase.isPasswordRequired(file));
    assertTrue(new WEBDBKeyDatabase(file).isPasswordRequired());

    stash();

    assertFalse(CMSKeyDatabase.isPasswordRequired(file));
    assertFalse(new WEBDBKeyDatabase(file).isPasswordRequired());
    CMSKeyDatabase.openWithStash(file).close();
  }

  @Test
  void theStashFileIsItsOwnersAloneAndBesideTheDatabase() throws Exception {
    stash();

    assertEquals(
        PosixFilePermissions.fromString("rw-------"),
        Files.getPosixFilePermissions(folder.resolve("test.sth")));
  }

  @Test
  void withoutAStashFileOneIsMissing() {
    assertFails(PWDFILE_NOT_EXIST, () -> CMSKeyDatabase.openWithStash(file));
  }

  @Test
  void aMissingDatabaseIsNotOneWithoutPassword() {
    assertFails(
        KEYDB_NOT_EXIST, () -> CMSKeyDatabase.isPasswordRequired(folder.resolve("other.kdb")));
  }

  @Test
  void aPasswordPastItsLifetimeIsCode70AndCanStillBeChanged() throws Exception {
    Path shortLived = folder.resolve("short.kdb");
    CMSKeyDatabase.create(shortLived, TestDatabase.password(), Duration.ofSeconds(1)).close();
    Thread.sleep(2100);
    assertFails(
        PASSWORD_EXPIRATION_TIME, () -> CMSKeyDatabase.open(shortLived, TestDatabase.password()));

    CMSKeyDatabase.changePassword(
        shortLived, TestDatabase.password(), NEW_PASSWORD.toCharArray(), Duration.ZERO);

    CMSKeyDatabase.open(shortLived, NEW_PASSWORD.toCharArray()).close();
  }

  private void change(char[] oldPassword, String newPassword) throws CMSKeyDatabaseException {
    CMSKeyDatabase.changePassword(file, oldPassword, newPassword.toCharArray(), Duration.ZERO);
  }

  private void stash() throws CMSKeyDatabaseException {
    try (CMSKeyDatabase db = CMSKeyDatabase.open(file, TestDatabase.password())) {
      db.stashPassword();
    }
  }
}
