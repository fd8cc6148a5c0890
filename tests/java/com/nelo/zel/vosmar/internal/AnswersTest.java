package com.nelo.zel.vosmar.internal;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.ResultCode;
import java.util.List;
import java.util.Optional;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/** The reasons that are found where a native method keeps its own, by the names of their codes. */
class AnswersTest {
  private final Answers<CMSKeyDatabaseException> answers =
      new Answers<>("keys.kdb", CMSKeyDatabaseException::new);

  @Test
  void aCodeIsToldUnlessItIsSuccess() throws Exception {
    answers.check(0);
    answers.check(0, "web");
    assertFails(ResultCode.ASN, "keys.kdb", () -> answers.check(2));
    assertFails(ResultCode.ASN, "keys.kdb: web", () -> answers.check(2, "web"));
  }

  @Test
  void whatIsNotGivenIsTold() throws Exception {
    int crypto = ResultCode.CRYPTO.code();

    assertEquals("key", answers.given("key", crypto));
    assertEquals("key", answers.given("key", crypto, "decrypting"));
    assertFails(ResultCode.CRYPTO, "keys.kdb", () -> answers.given(null, crypto));
    assertFails(
        ResultCode.CRYPTO, "keys.kdb: decrypting", () -> answers.given(null, crypto, "decrypting"));
  }

  @Test
  void aListedEntryThatIsNotGivenCannotBeRead() throws Exception {
    assertEquals("item", answers.found("item", "web", AnswersTest::unreadable));
    assertFails(
        ResultCode.DATABASE_READ,
        "keys.kdb: web",
        () -> answers.found(null, "web", () -> List.of("web")));
    assertFails(
        ResultCode.KEY_GET_BY_LABEL,
        "keys.kdb: web",
        () -> answers.found(null, "web", () -> List.of("other")));
  }

  @Test
  void nothingFoundIsAnAnswerWhereLabelsCanBeListed() throws Exception {
    assertEquals(List.of("a", "b"), answers.all(new String[] {"a", "b"}, AnswersTest::unreadable));
    assertEquals(List.of(), answers.all(null, List::of));
    assertFails(
        ResultCode.DATABASE_CORRUPTION, "file", () -> answers.all(null, AnswersTest::unreadable));
  }

  @Test
  void noIsAnAnswerWhereLabelsCanBeListed() throws Exception {
    assertTrue(answers.holds(true, AnswersTest::unreadable));
    assertFalse(answers.holds(false, List::of));
    assertFails(
        ResultCode.DATABASE_CORRUPTION,
        "file",
        () -> answers.holds(false, AnswersTest::unreadable));
  }

  @Test
  void noIsAnAnswerForAListedEntry() throws Exception {
    assertTrue(answers.holdsFor(true, "web", AnswersTest::unreadable));
    assertFalse(answers.holdsFor(false, "web", () -> List.of("web")));
    assertFails(
        ResultCode.KEY_GET_BY_LABEL,
        "keys.kdb: web",
        () -> answers.holdsFor(false, "web", List::of));
  }

  @Test
  void theNewPasswordIsBlamedWhenTheOldOneFits() {
    int expired = ResultCode.PASSWORD_EXPIRATION_TIME.code();
    int wrong = ResultCode.DATABASE_INVALID_PASSWORD.code();

    assertReason(ResultCode.NEW_PASSWORD, answers.passwordUnchanged(0));
    assertReason(ResultCode.NEW_PASSWORD, answers.passwordUnchanged(expired));
    assertReason(ResultCode.DATABASE_INVALID_PASSWORD, answers.passwordUnchanged(wrong));
  }

  @Test
  void theStashFileIsBlamedWhenThePasswordFits() {
    int wrong = ResultCode.DATABASE_INVALID_PASSWORD.code();

    assertReason(ResultCode.FILE_WRITE, answers.passwordUnstashed(0));
    assertReason(ResultCode.DATABASE_INVALID_PASSWORD, answers.passwordUnstashed(wrong));
  }

  private static List<String> unreadable() throws CMSKeyDatabaseException {
    throw new CMSKeyDatabaseException(ResultCode.DATABASE_CORRUPTION, "file");
  }

  private static void assertFails(ResultCode reason, String subject, Executable operation) {
    var failure = assertThrows(CMSKeyDatabaseException.class, operation);
    assertReason(reason, failure);
    assertEquals(subject, failure.subject());
  }

  private static void assertReason(ResultCode reason, CMSKeyDatabaseException failure) {
    assertEquals(Optional.of(reason), failure.reason());
  }
}
