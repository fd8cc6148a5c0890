package com.nelo.zel.vosmar.cli.options;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

class TokenUriTest {
  @Test
  void namesATokenAndItsModule() {
    assertEquals(
        new TokenUri("mine", "softhsm2"), TokenUri.parse("pkcs11:token=mine?module-name=softhsm2"));
    assertEquals(
        new TokenUri("mine", "/lib/a b.so"),
        TokenUri.parse("PKCS11:token=mine?module-path=/lib/a%20b.so"));
  }

  @Test
  void whatIsWrittenIsReadBack() {
    TokenUri uri =
        new TokenUri("T\u00f6k\u20acn; 1+1 (2)", "softokn3.so?args=configdir='/a&b' flags=");

    assertEquals(
        "pkcs11:token=T%C3%B6k%E2%82%ACn%3B%201%2B1%20%282%29"
            + "?module-path=softokn3.so%3Fargs%3Dconfigdir%3D%27/a%26b%27%20flags%3D",
        uri.toString());
    assertEquals(uri, TokenUri.parse(uri.toString()));
  }

  @Test
  void aFileIsNotTakenForOne() {
    assertTrue(TokenUri.isOne("pkcs11:"));
    assertFalse(TokenUri.isOne("pkcs11.kdb"));
    assertFalse(TokenUri.isOne("./pkcs11:kdb"));
  }

  @ParameterizedTest
  @ValueSource(
      strings = {
        "mine",
        "pkcs11:",
        "pkcs11:token=mine",
        "pkcs11:?module-name=softhsm2",
        "pkcs11:token=mine?module-name=softhsm2&module-path=/lib/a.so",
        "pkcs11:token=mine;token=yours?module-name=softhsm2",
        "pkcs11:token=mine;serial=1?module-name=softhsm2",
        "pkcs11:token=mine?module-name=softhsm2&pin-value=1234",
        "pkcs11:token?module-name=softhsm2",
        "pkcs11:token=%?module-name=softhsm2"
      })
  void whatDoesNotNameOneTokenIsRefused(String text) {
    assertThrows(IllegalArgumentException.class, () -> TokenUri.parse(text));
  }
}
