package com.nelo.security.cmskeystore;

import java.lang.reflect.Array;
import java.lang.reflect.Field;
import java.lang.reflect.Modifier;
import java.util.Collection;
import java.util.Collections;
import java.util.IdentityHashMap;
import java.util.Set;
import java.util.stream.Collectors;

/** All the objects of this product that can be reached from one, through fields and collections. */
final class ObjectTree {
  private final Set<Object> objects = Collections.newSetFromMap(new IdentityHashMap<>());

  ObjectTree(Object root) throws IllegalAccessException {
    visit(root);
  }

  /** The names of their classes, each once. */
  Set<String> classNames() {
    return objects.stream().map(object -> object.getClass().getName()).collect(Collectors.toSet());
  }

  private void visit(Object object) throws IllegalAccessException {
    if (object instanceof Collection<?> collection) {
      for (Object element : collection) {
        visit(element);
      }
    } else if (object instanceof Object[] array) {
      for (int i = 0; i < Array.getLength(array); ++i) {
        visit(array[i]);
      }
    } else if (isOurs(object) && objects.add(object)) {
      visitFields(object, object.getClass());
    }
  }

  private void visitFields(Object object, Class<?> type) throws IllegalAccessException {
    if (type == Object.class) {
      return;
    }
    for (Field field : type.getDeclaredFields()) {
      if (!Modifier.isStatic(field.getModifiers())) {
        field.setAccessible(true);
        visit(field.get(object));
      }
    }
    visitFields(object, type.getSuperclass());
  }

  private static boolean isOurs(Object object) {
    return object != null && object.getClass().getName().startsWith("com.nelo.");
  }
}
