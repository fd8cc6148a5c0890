package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Optional;
import java.util.regex.MatchResult;
import java.util.regex.Pattern;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.MethodSource;
import org.junit.jupiter.params.provider.ValueSource;

class ResultCodeTest {
  private static final Pattern ANSWER =
      Pattern.compile("^\\| (\\d+) \\| `ZELKM_ERR_", Pattern.MULTILINE);
  private static final int NO_CODE = 152;

  @ParameterizedTest
  @EnumSource
  void aCodeIsFoundByItsNumberAndHasTheNameOfTheNativeLibrary(ResultCode code) {
    assertEquals(Optional.of(code), ResultCode.of(code.code()));
    assertEquals("ZELKM_ERR_" + code.name(), CMSKeyDatabaseException.nameOf(code.code()));
  }

  @Test
  void theCodesRunFrom1WithoutAGap() {
    List<ResultCode> codes = List.of(ResultCode.values());

    assertEquals(151, codes.size());
    codes.forEach(code -> assertEquals(code.ordinal() + 1, code.code()));
  }

  @ParameterizedTest
  @ValueSource(ints = {0, -1, NO_CODE})
  void otherNumbersAreNoCodes(int number) {
    assertEquals(Optional.empty(), ResultCode.of(number));
  }

  @ParameterizedTest
  @MethodSource("answered")
  void aCodeThatIsAnsweredHasAKindAndWords(int number) {
    ResultCode code = ResultCode.of(number).orElseThrow();

    assertNotEquals(ResultKind.OTHER, code.kind());
    assertNotEquals(ResultCode.MUTEX.explanation(), code.explanation());
    assertFalse(code.explanation().isBlank());
  }

  @Test
  void anExceptionTellsReasonAndKind() {
    CMSKeyDatabaseException failure =
        new CMSKeyDatabaseException(ResultCode.DATABASE_INVALID_PASSWORD, "server.kdb");

    assertEquals(new CMSKeyDatabaseException(16, "server.kdb").getMessage(), failure.getMessage());
    assertEquals(16, failure.code());
    assertEquals(Optional.of(ResultCode.DATABASE_INVALID_PASSWORD), failure.reason());
    assertEquals(ResultKind.PASSWORD, failure.kind());
  }

  @Test
  void anExceptionOfAnotherNumberHasNoReason() {
    CMSKeyDatabaseException failure = new CMSKeyDatabaseException(NO_CODE, "x.kdb");

    assertEquals("x.kdb: the operation failed (152, no known code)", failure.getMessage());
    assertEquals(Optional.empty(), failure.reason());
    assertEquals(ResultKind.OTHER, failure.kind());
  }

  /** The codes that some operation answers, as the document of all answers lists them. */
  private static Stream<Integer> answered() throws IOException {
    Path document = Path.of(System.getProperty("vosmar.test.documents"), "engine-errors.md");
    return ANSWER
        .matcher(Files.readString(document))
        .results()
        .map((MatchResult row) -> Integer.valueOf(row.group(1)))
        .distinct();
  }
}
