package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.invoke.MethodType;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.stream.Stream;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/** What the native library looks up by name and signature is there, as the library spells it. */
class NativeShapesTest {
  @ParameterizedTest
  @CsvSource(
      delimiter = ' ',
      value = {
        "BERObject ([B)V",
        "EncryptedPrivateKeyInfoItem ([B)V",
        "PrivateKeyInfoItem ([B)V",
        "CertificateItem ([B)V",
        "CertificateItem (SS$String;@DNItem;@DNItem;JJ@BERObject;@BERObject;[B@BERObject;"
            + "$String;$String;[B[B)V",
        "CertificateRequestItem (S@DNItem;@BERObject;@BERObject;[B@BERObject;$String;$String;[B[B)V",
        "KeyItem ($String;SS@EncryptedPrivateKeyInfoItem;[@CertificateItem;@BERObject;ZZ)V",
        "KeyItem ($String;SS@EncryptedPrivateKeyInfoItem;@CertificateRequestItem;@BERObject;)V",
        "DNItem ($String;$String;$String;$String;$String;$String;$String;$String;[B)V"
      })
  void constructorsAreThere(String className, String descriptor) {
    Class<?>[] parameters = methodType(descriptor).parameterArray();

    assertDoesNotThrow(() -> itemClass(className).getDeclaredConstructor(parameters));
  }

  @ParameterizedTest
  @CsvSource(
      delimiter = ' ',
      value = {
        "DNItem addOptionalField ($String;)V",
        "KeyItem setHasPrivateKey (Z)V",
        "CMSKeyDatabase addKeyLabel ($String;)V",
        "CMSKeyDatabase addReqKeyLabel ($String;)V",
        "CryptographicToken addPersonalKeyLabel ($String;)V",
        "CryptographicToken addSignerKeyLabel ($String;)V",
        "CryptographicToken addRequestKeyLabel ($String;)V",
        "MSCertificateStore addKeyLabel ($String;)V",
        "MSCertificateStore addPersonalKeyLabel ($String;)V",
        "MSCertificateStore addSignerKeyLabel ($String;)V"
      })
  void callbacksAreThere(String className, String name, String descriptor) throws Exception {
    MethodType type = methodType(descriptor);
    Method method = itemClass(className).getDeclaredMethod(name, type.parameterArray());

    assertEquals(type.returnType(), method.getReturnType());
    assertTrue(!Modifier.isStatic(method.getModifiers()));
  }

  @ParameterizedTest
  @CsvSource(
      delimiter = ' ',
      value = {
        "CMSKeyDatabaseException addCMSErrCode (I$String;)Z",
        "CryptographicToken addTokenLabel ($String;)V",
        "MSCertificateStore addCSPName ($String;)V"
      })
  void staticCallbacksAreThere(String className, String name, String descriptor) throws Exception {
    MethodType type = methodType(descriptor);
    Method method = itemClass(className).getDeclaredMethod(name, type.parameterArray());

    assertEquals(type.returnType(), method.getReturnType());
    assertTrue(Modifier.isStatic(method.getModifiers()));
  }

  @ParameterizedTest
  @ValueSource(strings = {"cn", "ou", "o", "l", "s", "pc", "c"})
  void theFieldsOfANameAreStrings(String field) throws Exception {
    assertEquals(String.class, DNItem.class.getDeclaredField(field).getType());
  }

  @ParameterizedTest
  @CsvSource({
    "KMSystem, 6",
    "CMSKeyDatabaseException, 1",
    "CMSKeyDatabase, 38",
    "WEBDBKeyDatabase, 1",
    "CryptographicToken, 17",
    "MSCertificateStore, 9"
  })
  void nativeMethodsAreCompleteAndStayInThePackage(String className, int count) throws Exception {
    var natives =
        Stream.of(itemClass(className).getDeclaredMethods())
            .filter(method -> Modifier.isNative(method.getModifiers()))
            .toList();

    assertEquals(count, natives.size());
    int exposed = Modifier.PUBLIC | Modifier.PROTECTED;
    assertTrue(natives.stream().allMatch(method -> (method.getModifiers() & exposed) == 0));
    assertTrue(natives.stream().allMatch(method -> method.getName().startsWith("c_")));
  }

  private static Class<?> itemClass(String simpleName) throws ClassNotFoundException {
    return Class.forName(NativeShapesTest.class.getPackageName() + "." + simpleName);
  }

  /** Descriptors in which $ stands for the package of String and @ for that of the items. */
  private static MethodType methodType(String shortened) {
    return MethodType.fromMethodDescriptorString(
        shortened.replace("$", "Ljava/lang/").replace("@", "Lcom/nelo/zel/vosmar/basic/"),
        NativeShapesTest.class.getClassLoader());
  }
}
