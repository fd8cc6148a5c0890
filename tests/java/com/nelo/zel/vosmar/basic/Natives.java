package com.nelo.zel.vosmar.basic;

import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.stream.Stream;

/** Calls native methods past the public methods that guard them. */
final class Natives {
  private Natives() {}

  /**
   * An argument for each parameter: texts, numbers and arrays of one element, none of them null.
   */
  static Object[] someArguments(Class<?> type, String name) {
    return Arrays.stream(named(type, name).getParameterTypes()).map(Natives::some).toArray();
  }

  /** Calls the method of that name. A static one does without an object. */
  static Object call(Object self, Class<?> type, String name, Object... arguments)
      throws ReflectiveOperationException {
    Method method = named(type, name);
    method.setAccessible(true);
    return method.invoke(self, arguments);
  }

  private static Method named(Class<?> type, String name) {
    return Stream.of(type.getDeclaredMethods())
        .filter(method -> Modifier.isNative(method.getModifiers()) && method.getName().equals(name))
        .findAny()
        .orElseThrow();
  }

  private static Object some(Class<?> parameter) {
    if (parameter == int.class) {
      return 1;
    }
    if (parameter == boolean.class) {
      return false;
    }
    if (parameter == byte[].class) {
      return new byte[1];
    }
    return parameter == DNItem.class ? DNItem.parse("CN=a") : "a";
  }
}
