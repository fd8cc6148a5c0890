package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED;
import static com.nelo.zel.vosmar.basic.ResultCode.CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.lang.reflect.Constructor;
import java.nio.file.Path;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** What there is to a token before one is opened. */
class CryptographicTokenTest {
  private static final int PARAMETER_MISSING = ResultCode.PARAMETER.code();
  private static final String NO_MODULE = "/nonexistent/module.so";

  private CryptographicToken token;

  @BeforeEach
  void remembersAModuleThatIsNotThere() throws Exception {
    KMSystem.start();
    Constructor<CryptographicToken> constructor =
        CryptographicToken.class.getDeclaredConstructor(String.class, String.class, char[].class);
    constructor.setAccessible(true);
    token = constructor.newInstance(NO_MODULE, "token", null);
  }

  @ParameterizedTest
  @CsvSource({
    "c_GetCryptoTokenLabelList, 0",
    "c_ChangeKeyDbPwd, 0 1 2 3",
    "c_BuildKeyLabelList, 0 1",
    "c_DeleteKeyItemByLabel, 0 1 3",
    "c_ReceivePersonalCertificate, 0 1 5",
    "c_ImportCertificate, 0 1 5 7",
    "c_AddSignerCertificate, 0 1 3 4",
    "c_ExtractCertificate, 0 1 3 4",
    "c_CreatePersonalCertificateRequest, 0 1 3 5 7",
    "c_ImportPersonalCertificateRequest, 0 1 3 5",
    "c_RecreatePersonalCertificateRequest, 0 1 3 5",
    "c_ExtractPersonalCertificateRequest, 0 1 3 4",
    "c_CreateSelfSignedCertificate, 0 1 4 6",
    "c_RenewPersonalCertificate, 0 1 4"
  })
  void anArgumentThatIsMissingIsCode65AndNoOtherIs(String name, String required) throws Exception {
    Object[] arguments = Natives.someArguments(CryptographicToken.class, name);
    for (int i = 0; i < arguments.length; ++i) {
      if (arguments[i] instanceof Integer || arguments[i] instanceof Boolean) {
        continue;
      }
      Object given = arguments[i];
      arguments[i] = null;
      boolean isRequired = (" " + required + " ").contains(" " + i + " ");
      assertEquals(isRequired, call(name, arguments).equals(PARAMETER_MISSING), "argument " + i);
      arguments[i] = given;
    }
  }

  @ParameterizedTest
  @CsvSource({
    "c_ImportCertificate, 6, 0",
    "c_ImportPersonalCertificateRequest, 4, 0",
    "c_RenewPersonalCertificate, 3, 0",
    "c_RenewPersonalCertificate, 3, -1",
    "c_CreatePersonalCertificateRequest, 6, 0",
    "c_CreatePersonalCertificateRequest, 6, 3",
    "c_RecreatePersonalCertificateRequest, 4, 3",
    "c_CreateSelfSignedCertificate, 8, 0"
  })
  void aNumberThatCannotBeIsCode65(String name, int position, int number) throws Exception {
    Object[] arguments = Natives.someArguments(CryptographicToken.class, name);
    assertNotEquals(PARAMETER_MISSING, call(name, arguments));

    arguments[position] = number;

    assertEquals(PARAMETER_MISSING, call(name, arguments));
  }

  @ParameterizedTest
  @CsvSource({
    "c_GetKeyItemByLabel, 0 1 3",
    "c_IsPasswordRequired, 0 1",
    "c_IsPersonalCertificateRenewal, 0 1 4"
  })
  void whereNoCodeReachesJavaAMissingArgumentIsNothingOrFalse(String name, String required)
      throws Exception {
    for (String position : required.split(" ")) {
      Object[] arguments = Natives.someArguments(CryptographicToken.class, name);
      arguments[Integer.parseInt(position)] = null;
      Object answer = call(name, arguments);
      assertFalse(answer instanceof Boolean yes ? yes : answer != null, "argument " + position);
    }
  }

  @Test
  void aModuleThatIsNotThereIsCode140() {
    assertFails(CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, () -> CryptographicToken.list(NO_MODULE));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED,
        () -> CryptographicToken.open(NO_MODULE, "token", null));
    assertFails(CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, () -> token.deleteKey("key"));
    assertFails(CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, () -> token.key("key"));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_LIBRARY_NOT_LOADED, () -> token.certificates().isRenewal(new byte[1]));
  }

  @Test
  void wishesThatATokenCannotFulfilAreRefused() {
    DNItem name = DNItem.parse("CN=key");
    KeyType keyType = KeyType.ec(256);
    Path file = Path.of("key.pem");

    assertRefused(new SelfSignedCertificate("key", name, keyType).asDefaultKey());
    assertRefused(new SelfSignedCertificate("key", name, keyType).withExtensions(new byte[1]));
    assertRefused(
        new SelfSignedCertificate("key", name, keyType).writtenTo(file, Encoding.BASE64));
    assertFails(
        CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT,
        () ->
            token.certificates().createRequest(
                new NewCertificateRequest("key", name, keyType, file)
                    .withExtensions(new byte[1])));
  }

  @Test
  void aClosedTokenIsNotUsed() {
    token.close();

    assertThrows(IllegalStateException.class, () -> token.labels());
  }

  private void assertRefused(SelfSignedCertificate certificate) {
    assertFails(
        CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT, () -> token.certificates().createSelfSigned(certificate));
  }

  private Object call(String name, Object... arguments) throws ReflectiveOperationException {
    return Natives.call(token, CryptographicToken.class, name, arguments);
  }
}
