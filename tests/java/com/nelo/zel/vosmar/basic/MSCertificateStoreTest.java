package com.nelo.zel.vosmar.basic;

import static com.nelo.zel.vosmar.basic.Failures.assertFails;
import static com.nelo.zel.vosmar.basic.ResultCode.UNSUPPORTED_OPTION;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.lang.reflect.Constructor;
import java.nio.file.Path;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** What there is to a certificate store before one is opened. */
class MSCertificateStoreTest {
  private static final int PARAMETER_MISSING = ResultCode.PARAMETER.code();

  private MSCertificateStore store;

  @BeforeEach
  void remembersAStoreThatIsNotThere() throws Exception {
    KMSystem.start();
    Constructor<MSCertificateStore> constructor =
        MSCertificateStore.class.getDeclaredConstructor(String.class, char[].class);
    constructor.setAccessible(true);
    store = constructor.newInstance("Nobody/None", null);
  }

  @ParameterizedTest
  @CsvSource({
    "c_DeleteKeyItemByLabel, 2",
    "c_ImportCertificate, 2 4",
    "c_AddSignerCertificate, 2 3"
  })
  void anArgumentThatIsMissingIsCode65(String name, String required) throws Exception {
    assertNotEquals(PARAMETER_MISSING, call(name, someArguments(name)));
    for (String position : required.split(" ")) {
      Object[] arguments = someArguments(name);
      arguments[Integer.parseInt(position)] = null;
      assertEquals(PARAMETER_MISSING, call(name, arguments), "argument " + position);
    }
  }

  @ParameterizedTest
  @CsvSource({
    "c_ImportCertificate, 3, 0",
    "c_CreateNewSelfSignedCertificate, 7, 0",
    "c_CreateNewSelfSignedCertificate, 7, 3"
  })
  void aNumberThatCannotBeIsCode65(String name, int position, int number) throws Exception {
    Object[] arguments = someArguments(name);
    assertNotEquals(PARAMETER_MISSING, call(name, arguments));

    arguments[position] = number;

    assertEquals(PARAMETER_MISSING, call(name, arguments));
  }

  @Test
  void aSubjectThatIsMissingIsCode116() throws Exception {
    Object[] arguments = someArguments("c_CreateNewSelfSignedCertificate");
    arguments[5] = null;

    assertEquals(
        ResultCode.INVALID_DN_INPUT.code(), call("c_CreateNewSelfSignedCertificate", arguments));
  }

  @Test
  void theNamesOfTheStoresAreAskedForWithoutAnyArgument() throws Exception {
    assertNotEquals(PARAMETER_MISSING, call("c_GetCSPNameList"));
  }

  @Test
  void aStoreThatIsNotThereFindsNothingAndSaysSo() {
    assertThrows(
        CMSKeyDatabaseException.class, () -> MSCertificateStore.open("Nobody/None", null));
    assertThrows(CMSKeyDatabaseException.class, () -> store.key("key"));
    assertThrows(CMSKeyDatabaseException.class, () -> store.keysWithLabel("key"));
    assertThrows(CMSKeyDatabaseException.class, () -> store.keysWithPublicKey(new byte[1]));
  }

  @Test
  void aLabelThatIsMissingFindsNothing() throws Exception {
    assertNull(call("c_GetKeyItemByLabel", "Nobody/None", null, null));
    // This native would hand a missing label to the virtual machine, so its method sees to it.
    assertThrows(NullPointerException.class, () -> store.keysWithLabel(null));
  }

  @ParameterizedTest
  @CsvSource({"0", "-1", "2"})
  void aPublicKeyOfAnotherLengthFindsNothing(int length) throws Exception {
    assertNull(call("c_GetKeyItemsByPublicKey", "Nobody/None", null, length, new byte[1]));
  }

  @Test
  void wishesThatAStoreCannotFulfilAreRefused() {
    DNItem name = DNItem.parse("CN=key");
    KeyType keyType = KeyType.ec(256);

    assertRefused(new SelfSignedCertificate("key", name, keyType).asDefaultKey());
    assertRefused(
        new SelfSignedCertificate("key", name, keyType)
            .writtenTo(Path.of("key.pem"), Encoding.BASE64));
  }

  @Test
  void aClosedStoreIsNotUsed() {
    store.close();

    assertThrows(IllegalStateException.class, () -> store.labels());
  }

  private void assertRefused(SelfSignedCertificate certificate) {
    assertFails(UNSUPPORTED_OPTION, () -> store.certificates().createSelfSigned(certificate));
  }

  private static Object[] someArguments(String name) {
    return Natives.someArguments(MSCertificateStore.class, name);
  }

  private Object call(String name, Object... arguments) throws ReflectiveOperationException {
    return Natives.call(store, MSCertificateStore.class, name, arguments);
  }
}
