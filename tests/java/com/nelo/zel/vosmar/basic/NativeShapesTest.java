package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.invoke.MethodType;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.Map;
import java.util.Objects;
import java.util.stream.Stream;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * What the native library looks up by name and signature is there, as the library spells it. Items
 * are looked up in both packages, {@code basic} and {@code legacy}.
 */
class NativeShapesTest {
  private static final Map<String, String> PACKAGES =
      Map.of("basic", "com/nelo/zel/vosmar/basic/", "legacy", "com/nelo/security/cmskeystore/");

  @ParameterizedTest
  @CsvSource(
      delimiter = ' ',
      value = {
        "basic+legacy BERObject ([B)V",
        "basic+legacy EncryptedPrivateKeyInfoItem ([B)V",
        "basic+legacy PrivateKeyInfoItem ([B)V",
        "basic+legacy CertificateItem ([B)V",
        "basic+legacy CertificateItem (SS$String;@DNItem;@DNItem;JJ@BERObject;@BERObject;[B"
            + "@BERObject;$String;$String;[B[B)V",
        "basic CertificateRequestItem"
            + " (S@DNItem;@BERObject;@BERObject;[B@BERObject;$String;$String;[B[B)V",
        "basic+legacy KeyItem"
            + " ($String;SS@EncryptedPrivateKeyInfoItem;[@CertificateItem;@BERObject;ZZ)V",
        "basic KeyItem"
            + " ($String;SS@EncryptedPrivateKeyInfoItem;@CertificateRequestItem;@BERObject;)V",
        "basic+legacy DNItem"
            + " ($String;$String;$String;$String;$String;$String;$String;$String;[B)V"
      })
  void constructorsAreInTheClassItself(String packages, String className, String descriptor)
      throws Exception {
    for (String name : packages.split("\\+")) {
      Class<?>[] parameters = methodType(name, descriptor).parameterArray();

      assertDoesNotThrow(() -> type(name, className).getDeclaredConstructor(parameters));
    }
  }

  @ParameterizedTest
  @CsvSource(
      delimiter = ' ',
      value = {
        "basic+legacy DNItem addOptionalField ($String;)V",
        "basic+legacy KeyItem setHasPrivateKey (Z)V",
        "basic+legacy CMSKeyDatabase addKeyLabel ($String;)V",
        "basic+legacy CMSKeyDatabase addReqKeyLabel ($String;)V",
        "basic CryptographicToken addPersonalKeyLabel ($String;)V",
        "basic CryptographicToken addSignerKeyLabel ($String;)V",
        "basic CryptographicToken addRequestKeyLabel ($String;)V",
        "basic MSCertificateStore addKeyLabel ($String;)V",
        "basic MSCertificateStore addPersonalKeyLabel ($String;)V",
        "basic MSCertificateStore addSignerKeyLabel ($String;)V"
      })
  void callbacksAreThere(String packages, String className, String name, String descriptor)
      throws Exception {
    for (String of : packages.split("\\+")) {
      Method method = methodAsJniFindsIt(type(of, className), name, methodType(of, descriptor));

      assertFalse(Modifier.isStatic(method.getModifiers()));
    }
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
    MethodType shape = methodType("basic", descriptor);

    Method method = methodAsJniFindsIt(type("basic", className), name, shape);

    assertTrue(Modifier.isStatic(method.getModifiers()));
  }

  @ParameterizedTest
  @ValueSource(strings = {"cn", "ou", "o", "l", "s", "pc", "c"})
  void theFieldsOfANameAreStrings(String name) throws Exception {
    assertEquals(String.class, fieldAsJniFindsIt(DNItem.class, name).getType());
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
        Stream.of(type("basic", className).getDeclaredMethods())
            .filter(method -> Modifier.isNative(method.getModifiers()))
            .toList();

    assertEquals(count, natives.size());
    int exposed = Modifier.PUBLIC | Modifier.PROTECTED;
    assertTrue(natives.stream().allMatch(method -> (method.getModifiers() & exposed) == 0));
    assertTrue(natives.stream().allMatch(method -> method.getName().startsWith("c_")));
  }

  /** GetMethodID and GetStaticMethodID find what the class declares, and what it inherits. */
  private static Method methodAsJniFindsIt(Class<?> type, String name, MethodType shape)
      throws NoSuchMethodException {
    int inherited = Modifier.PUBLIC | Modifier.PROTECTED;
    return superclassesFrom(type)
        .flatMap(declarer -> Stream.of(declarer.getDeclaredMethods()))
        .filter(method -> method.getName().equals(name))
        .filter(method -> Arrays.equals(method.getParameterTypes(), shape.parameterArray()))
        .filter(method -> method.getReturnType() == shape.returnType())
        .filter(
            method ->
                method.getDeclaringClass() == type || (method.getModifiers() & inherited) != 0)
        .findFirst()
        .orElseThrow(() -> new NoSuchMethodException(type + "." + name + shape));
  }

  /** GetFieldID goes up to the superclasses whatever the access. */
  private static Field fieldAsJniFindsIt(Class<?> type, String name) throws NoSuchFieldException {
    return superclassesFrom(type)
        .flatMap(declarer -> Stream.of(declarer.getDeclaredFields()))
        .filter(field -> field.getName().equals(name))
        .findFirst()
        .orElseThrow(() -> new NoSuchFieldException(name));
  }

  private static Stream<Class<?>> superclassesFrom(Class<?> type) {
    return Stream.iterate(type, Objects::nonNull, Class::getSuperclass);
  }

  private static Class<?> type(String packageName, String simpleName)
      throws ClassNotFoundException {
    return Class.forName(PACKAGES.get(packageName).replace('/', '.') + simpleName);
  }

  /** Descriptors in which $ stands for the package of String and @ for that of the items. */
  private static MethodType methodType(String packageName, String shortened) {
    return MethodType.fromMethodDescriptorString(
        shortened.replace("$", "Ljava/lang/").replace("@", "L" + PACKAGES.get(packageName)),
        NativeShapesTest.class.getClassLoader());
  }
}
