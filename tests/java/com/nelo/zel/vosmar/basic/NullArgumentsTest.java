package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertInstanceOf;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.lang.reflect.Constructor;
import java.lang.reflect.Executable;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.nio.file.Path;
import java.time.Duration;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.stream.IntStream;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.MethodSource;

/**
 * No public method lets a missing argument through to the native library, where a missing text
 * would end the virtual machine.
 */
class NullArgumentsTest {
  private static final Path FILE = Path.of("/nonexistent/test.kdb");
  private static final DNItem NAME = DNItem.parse("CN=key");
  private static final CMSKeyDatabase DATABASE = new CMSKeyDatabase(FILE, new char[] {'a'});
  private static final SelfSignedCertificate CERTIFICATE =
      new SelfSignedCertificate("key", NAME, KeyType.ec(256));
  private static final NewCertificateRequest REQUEST =
      new NewCertificateRequest("key", NAME, KeyType.ec(256), FILE);
  private static final CertificateIssue ISSUE = new CertificateIssue("ca", FILE, FILE);

  private static final Map<Class<?>, Object> SAMPLES =
      Map.ofEntries(
          Map.entry(String.class, "text"),
          Map.entry(Path.class, FILE),
          Map.entry(char[].class, new char[] {'a'}),
          Map.entry(byte[].class, new byte[] {1}),
          Map.entry(List.class, List.of("key")),
          Map.entry(Duration.class, Duration.ZERO),
          Map.entry(boolean.class, false),
          Map.entry(Encoding.class, Encoding.DER),
          Map.entry(SignatureAlgorithm.class, SignatureAlgorithm.SHA256),
          Map.entry(KeyType.class, KeyType.ec(256)),
          Map.entry(DNItem.class, NAME),
          Map.entry(AlternativeNames.class, AlternativeNames.parse("DNS:localhost")),
          Map.entry(CMSKeyDatabase.class, DATABASE),
          Map.entry(
              EncryptedPrivateKeyInfoItem.class, new EncryptedPrivateKeyInfoItem(new byte[] {1})),
          Map.entry(SelfSignedCertificate.class, CERTIFICATE),
          Map.entry(NewCertificateRequest.class, REQUEST),
          Map.entry(CertificateIssue.class, ISSUE));

  /** Arguments whose description says that they may be null, by their positions. */
  private static final Set<String> MAY_BE_NULL =
      Set.of(
          "com.nelo.security.cmskeystore.CMSKeyDatabase.insertKey 2",
          "com.nelo.zel.vosmar.basic.CertificateIssue.signedWith 0",
          "com.nelo.zel.vosmar.basic.CryptographicToken.insertRequest 2",
          "com.nelo.zel.vosmar.basic.CryptographicToken.open 2",
          "com.nelo.zel.vosmar.basic.CryptographicToken.useSecondaryKeyDatabase 0",
          "com.nelo.zel.vosmar.basic.CryptographicToken.useSecondaryKeyDatabase 1",
          "com.nelo.zel.vosmar.basic.MSCertificateStore.open 1",
          "com.nelo.zel.vosmar.basic.NewCertificateRequest.signedWith 0",
          "com.nelo.zel.vosmar.basic.SelfSignedCertificate.signedWith 0");

  @ParameterizedTest(name = "{0} {1}", autoCloseArguments = false)
  @MethodSource("publicMethodsByArgument")
  void aMissingArgumentOfAMethodIsRefused(String name, int missing, Method method, Object self) {
    assertRefusesNull(method, missing, arguments -> method.invoke(self, arguments));
  }

  @ParameterizedTest(name = "{0} {1}")
  @MethodSource("constructorsByArgument")
  void aMissingArgumentOfAConstructorIsRefused(
      String name, int missing, Constructor<?> constructor) {
    assertRefusesNull(constructor, missing, constructor::newInstance);
  }

  @Test
  void aMissingLabelAmongSeveralIsRefused() {
    List<String> labels = Arrays.asList("key", null, "other");

    assertThrows(
        NullPointerException.class,
        () -> PfxFile.write(DATABASE, FILE, new char[] {'a'}, labels));
  }

  static Stream<Arguments> publicMethodsByArgument() throws ReflectiveOperationException {
    CryptographicToken token =
        make(CryptographicToken.class, "/nonexistent/module.so", "token", new char[] {'a'});
    MSCertificateStore store = make(MSCertificateStore.class, "Nobody/None", new char[] {'a'});
    return Stream.of(
            make(com.nelo.security.cmskeystore.CMSKeyDatabase.class, FILE, new char[] {'a'}),
            token,
            token.certificates(),
            store,
            store.certificates(),
            DATABASE,
            DATABASE.certificates(),
            CERTIFICATE,
            REQUEST,
            ISSUE,
            AlternativeNames.class,
            PfxFile.class,
            KeyRingFile.class,
            Pkcs7File.class,
            PrivateKeyEncryption.class)
        .flatMap(NullArgumentsTest::publicMethodsOf);
  }

  static Stream<Arguments> constructorsByArgument() {
    return Stream.of(
            SelfSignedCertificate.class,
            NewCertificateRequest.class,
            CertificateIssue.class,
            WEBDBKeyDatabase.class)
        .map(type -> type.getConstructors()[0])
        .flatMap(constructor -> byArgument(constructor.getName(), constructor, null));
  }

  private static Stream<Arguments> publicMethodsOf(Object subject) {
    Class<?> type = subject instanceof Class<?> utility ? utility : subject.getClass();
    return Stream.of(type.getMethods())
        .filter(method -> method.getDeclaringClass() != Object.class)
        .filter(method -> method.getParameterCount() > 0)
        .filter(method -> !isRefused(method, subject))
        .flatMap(method -> byArgument(type.getName() + "." + method.getName(), method, subject));
  }

  /** What a store does not do it refuses without a look at the arguments. */
  private static boolean isRefused(Method method, Object subject) {
    if (!(subject instanceof EntryStore || subject instanceof Certificates)) {
      return false;
    }
    try {
      method.invoke(subject, samples(method));
      return false;
    } catch (InvocationTargetException thrown) {
      return thrown.getCause() instanceof CMSKeyDatabaseException failure
          && failure.kind() == ResultKind.UNSUPPORTED;
    } catch (IllegalAccessException hidden) {
      throw new IllegalStateException(hidden);
    }
  }

  /** One case for each argument that is an object and has to be there. */
  private static Stream<Arguments> byArgument(String name, Executable called, Object self) {
    return IntStream.range(0, called.getParameterCount())
        .filter(i -> !called.getParameterTypes()[i].isPrimitive())
        .filter(i -> !MAY_BE_NULL.contains(name + " " + i))
        .mapToObj(i -> Arguments.of(name, i, called, self));
  }

  private static void assertRefusesNull(Executable called, int missing, Call call) {
    Object[] arguments = samples(called);
    arguments[missing] = null;

    var thrown = assertThrows(InvocationTargetException.class, () -> call.with(arguments));

    assertInstanceOf(NullPointerException.class, thrown.getCause());
  }

  private static Object[] samples(Executable called) {
    return Stream.of(called.getParameterTypes()).map(NullArgumentsTest::sample).toArray();
  }

  private static Object sample(Class<?> type) {
    Object sample = SAMPLES.get(type);
    if (sample == null) {
      throw new IllegalArgumentException("there is no sample of " + type);
    }
    return sample;
  }

  /** An object that remembers what is not there, made past the methods that would open it. */
  private static <T> T make(Class<T> type, Object... arguments)
      throws ReflectiveOperationException {
    var parameters =
        Stream.of(arguments).map(NullArgumentsTest::parameterFor).toArray(Class[]::new);
    var constructor = type.getDeclaredConstructor(parameters);
    constructor.setAccessible(true);
    return constructor.newInstance(arguments);
  }

  private static Class<?> parameterFor(Object argument) {
    return argument instanceof Path ? Path.class : argument.getClass();
  }

  private interface Call {
    Object with(Object... arguments) throws ReflectiveOperationException;
  }
}
