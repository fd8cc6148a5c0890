package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.stream.IntStream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

class CodeNamesTest {
  private static final int CODES = 151;

  @ParameterizedTest
  @CsvSource({
    "1, ZELKM_ERR_UNKNOWN",
    "16, ZELKM_ERR_DATABASE_INVALID_PASSWORD",
    "65, ZELKM_ERR_PARAMETER",
    "66, ZELKM_ERR_NULL_PARAMETER",
    "151, ZELKM_ERR_NO_TOKEN_PRESENT"
  })
  void codesHaveTheNamesOfTheNativeLibrary(int code, String name) {
    assertEquals(name, CMSKeyDatabaseException.nameOf(code));
  }

  @Test
  void everyCodeHasANameOfItsOwn() {
    var names = IntStream.rangeClosed(1, CODES).mapToObj(CMSKeyDatabaseException::nameOf).toList();

    assertTrue(names.stream().allMatch(name -> name.startsWith("ZELKM_ERR_")));
    assertEquals(CODES, names.stream().distinct().count());
  }

  @ParameterizedTest
  @CsvSource({"0", "-1", "152"})
  void otherNumbersHaveNone(int code) {
    assertEquals("no known code", CMSKeyDatabaseException.nameOf(code));
  }

  @Test
  void anExceptionTellsSubjectReasonCodeAndName() {
    CMSKeyDatabaseException failure = new CMSKeyDatabaseException(16, "server.kdb");

    assertEquals(
        "server.kdb: the password is wrong (16, ZELKM_ERR_DATABASE_INVALID_PASSWORD)",
        failure.getMessage());
    assertEquals(16, failure.code());
    assertEquals("ZELKM_ERR_DATABASE_INVALID_PASSWORD", failure.codeName());
    assertEquals("server.kdb", failure.subject());
  }

  @Test
  void aCodeWithoutWordsOfItsOwnStillTellsItsName() {
    assertEquals(
        "x.kdb: the operation failed (64, ZELKM_ERR_MUTEX)",
        new CMSKeyDatabaseException(64, "x.kdb").getMessage());
  }
}
