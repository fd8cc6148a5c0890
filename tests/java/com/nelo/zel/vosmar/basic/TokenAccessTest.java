package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
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
  private static final int WRONG_PIN = 16;
  private static final int PIN_TOO_SHORT = 130;
  private static final int NO_SUCH_TOKEN = 137;
  private static final int PIN_MISSING = 138;
  private static final int MODULE_NOT_LOADED = 140;
  private static final int NO_TOKEN = 151;

  private static final CryptographicToken.Labels EMPTY =
      new CryptographicToken.Labels(List.of(), List.of(), List.of());

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
      assertEquals(EMPTY, token.labels());
    }
  }

  @Test
  void theReasonsOfBeingKeptOutAreToldApart() throws Exception {
    char[] pin = TestToken.PIN.toCharArray();
    String module = TestToken.MODULE;
    assertFails(WRONG_PIN, () -> TestToken.open("654321"));
    assertFails(PIN_MISSING, () -> CryptographicToken.open(module, TestToken.LABEL, null));
    assertFails(NO_SUCH_TOKEN, () -> CryptographicToken.open(module, "no such token", pin));
    assertFails(MODULE_NOT_LOADED, () -> CryptographicToken.open("no-such-module", "token", pin));
    assertFails(MODULE_NOT_LOADED, () -> CryptographicToken.open("libcrypto.so.3", "token", pin));
    TestToken.open(TestToken.PIN).close();
  }

  @Test
  void aModuleWithoutTokensIsCode151() throws Exception {
    Path nothing = folder.resolve("nothing");
    assertTrue(nothing.toFile().mkdir());
    TestToken.useFolder(nothing);

    assertEquals(List.of(), CryptographicToken.list(TestToken.MODULE));
    assertFails(NO_TOKEN, () -> TestToken.open(TestToken.PIN));
  }

  @Test
  void thePasswordIsChanged() throws Exception {
    change(TestToken.PIN, "abcdef");

    assertFails(WRONG_PIN, () -> TestToken.open(TestToken.PIN));
    TestToken.open("abcdef").close();
  }

  @Test
  void thePasswordStaysWhenTheOldOrTheNewOneIsRefused() throws Exception {
    assertFails(WRONG_PIN, () -> change("654321", "abcdef"));
    assertFails(PIN_TOO_SHORT, () -> change(TestToken.PIN, "abc"));

    TestToken.open(TestToken.PIN).close();
  }

  private static void change(String oldPin, String newPin) throws CMSKeyDatabaseException {
    CryptographicToken.changePassword(
        TestToken.MODULE, TestToken.LABEL, oldPin.toCharArray(), newPin.toCharArray());
  }
}
