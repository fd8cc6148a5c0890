package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.HexFormat;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

class AlternativeNamesTest {
  @ParameterizedTest
  @CsvSource({
    "DNS:localhost, 82096c6f63616c686f7374",
    "dns:bücher.example, 8215786e2d2d62636865722d6b76612e6578616d706c65",
    "IP:127.0.0.1, 87047f000001",
    "IP:::1, 871000000000000000000000000000000001",
    "email:a@example.com, 810d61406578616d706c652e636f6d",
    "URI:urn:x, 860575726e3a78"
  })
  void aNameIsEncodedByItsKind(String text, String name) {
    assertTrue(extensions(text).endsWith(name), extensions(text));
  }

  @Test
  void severalNamesMakeOneExtension() {
    assertEquals(
        "301c301a0603551d1104133011" + "82096c6f63616c686f7374" + "87047f000001",
        extensions("DNS:localhost, IP:127.0.0.1"));
  }

  @ParameterizedTest
  @CsvSource({
    "130, 3081933081900603551d11048188308185818182",
    "300, 308201413082013d0603551d1104820134308201308182012c"
  })
  void longNamesHaveLongLengths(int length, String prefix) {
    String extensions = extensions("EMAIL:" + "a".repeat(length));

    assertEquals(prefix + "61".repeat(length), extensions);
  }

  @ParameterizedTest
  @ValueSource(
      strings = {
        "", "localhost", "DNS:", "DNS:a,", "HOST:a", "IP:localhost", "IP:1.2.3", "IP:1.2.3.256",
        "IP:12:34", "EMAIL:bücher@example.com"
      })
  void whatIsNoNameIsRefused(String text) {
    assertThrows(IllegalArgumentException.class, () -> AlternativeNames.parse(text));
  }

  private static String extensions(String text) {
    return HexFormat.of().formatHex(AlternativeNames.parse(text).extensions());
  }
}
