package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

class KeyTypeTest {
  @ParameterizedTest
  @CsvSource({
    "rsa:2048, RSA, 2048, 2048",
    "RSA:16384, RSA, 16384, 16384",
    "ec:256, EC, 256, 256",
    "EC:521, EC, 521, 521",
    "Ed25519, ED25519, 255, 25519"
  })
  void readsAlgorithmAndSize(String text, KeyAlgorithm algorithm, int bits, int selector) {
    KeyType type = KeyType.parse(text);

    assertEquals(algorithm, type.algorithm());
    assertEquals(bits, type.bits());
    assertEquals(selector, type.selector());
  }

  @ParameterizedTest
  @ValueSource(
      strings = {"", "rsa", "rsa:", "rsa:1024", "rsa:16385", "ec:255", "ed25519:256", "dsa:2048"})
  void refusesKeysThatThereAreNot(String text) {
    assertThrows(IllegalArgumentException.class, () -> KeyType.parse(text));
  }
}
