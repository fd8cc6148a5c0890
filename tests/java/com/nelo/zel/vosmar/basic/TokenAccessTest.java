package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED;
import static com.nelo.zel.vosmar.basic.ResultCode.DATABASE_INVALID_PASSWORD;
import static com.nelo.zel.vosmar.basic.ResultCode.NO_TOKEN_PRESENT;
import static com.nelo.zel.vosmar.basic.ResultCode.PWD_TOO_SHORT;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Which tokens there are, and who gets in, on a real module. */
class TokenAccessTest {
  @TempDir Path folder;

  @BeforeEach
  void makeAToken() throws Exception {
    TestToken.create(folder).close();
  }

  @Test
  void theTokensOfAModuleAreListed() throws Exception {
    TestToken.add("another");

    assertEquals(
        List.of(TestToken.LABEL, "another"), CryptographicToken.list(TestToken.MODULE));
    assertEquals(List.of(TestToken.LABEL, "another"), CryptographicToken.list("softhsm2"));
  }

  @Test
  void aTokenSaysThatItWantsAPassword() throws Exception {
    assertTrue(CryptographicToken.isPasswordRequired(TestToken.MODULE, TestToken.LABEL));
    assertFalse(CryptographicToken.isPasswordRequired(TestToken.MODULE, "no such token"));
  }

  @Test
  void theRightPasswordOpensIt() throws Exception {
    try (CryptographicToken token = TestToken.open(TestToken.PIN)) {
      TestToken.assertLabels(token, List.of(), List.of(), List.of());
    }
  }

  @Test
  void theReasonsOfBeingKeptOutAreToldApart() throws Exception {
    char[] pin = TestToken.PIN.toCharArray();
    String module = TestToken.MODULE;
    assertFails(DATABASE_INVALID_PASSWORD, () -> TestToken.open("654321"));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED,
        () -> CryptographicToken.open(module, TestToken.LABEL, null));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST,
        () -> CryptographicToken.open(module, "no such token", pin));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED,
        () -> CryptographicToken.open("no-such-module", "token", pin));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED,
        () -> CryptographicToken.open("libcrypto.so.3", "token", pin));
    TestToken.open(TestToken.PIN).close();
  }

  @Test
  void aModuleWithoutTokensIsCode151() throws Exception {
    Path nothing = folder.resolve("nothing");
    assertTrue(nothing.toFile().mkdir());
    TestToken.useFolder(nothing);

    assertEquals(List.of(), CryptographicToken.list(TestToken.MODULE));
    assertFails(NO_TOKEN_PRESENT, () -> TestToken.open(TestToken.PIN));
  }

  @Test
  void thePasswordIsChanged() throws Exception {
    change(TestToken.PIN, "abcdef");

    assertFails(DATABASE_INVALID_PASSWORD, () -> TestToken.open(TestToken.PIN));
    TestToken.open("abcdef").close();
  }

  @Test
  void thePasswordStaysWhenTheOldOrTheNewOneIsRefused() throws Exception {
    assertFails(DATABASE_INVALID_PASSWORD, () -> change("654321", "abcdef"));
    assertFails(PWD_TOO_SHORT, () -> change(TestToken.PIN, "abc"));

    TestToken.open(TestToken.PIN).close();
  }

  private static void change(String oldPin, String newPin) throws CMSKeyDatabaseException {
    CryptographicToken.changePassword(
        TestToken.MODULE, TestToken.LABEL, oldPin.toCharArray(), newPin.toCharArray());
  }
}
