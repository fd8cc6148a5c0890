package com.nelo.zel.vosmar.cli.view;

import java.util.Collection;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.stream.Collectors;

/** Writes maps, collections, texts, numbers, truth values and null as JSON (RFC&nbsp;8259). */
public final class Json {
  private Json() {}

  /**
   * Makes an object whose members are written in the order given, as those of {@code Map.of} are
   * not.
   *
   * @param members names with their values
   * @return the object
   */
  @SafeVarargs
  public static Map<String, Object> object(Map.Entry<String, ?>... members) {
    Map<String, Object> object = new LinkedHashMap<>();
    for (Map.Entry<String, ?> member : members) {
      object.put(member.getKey(), member.getValue());
    }
    return object;
  }

  /**
   * Writes a value.
   *
   * @param value the value; what is of none of these kinds is written as its text
   * @return one line
   */
  public static String write(Object value) {
    if (value instanceof Map<?, ?> map) {
      return map.entrySet().stream()
          .map(entry -> text(entry.getKey().toString()) + ":" + write(entry.getValue()))
          .collect(Collectors.joining(",", "{", "}"));
    }
    if (value instanceof Collection<?> items) {
      return items.stream().map(Json::write).collect(Collectors.joining(",", "[", "]"));
    }
    if (value == null || value instanceof Number || value instanceof Boolean) {
      return String.valueOf(value);
    }
    return text(value.toString());
  }

  private static String text(String value) {
    StringBuilder quoted = new StringBuilder("\"");
    for (char c : value.toCharArray()) {
      if (c == '"' || c == '\\') {
        quoted.append('\\').append(c);
      } else if (c < ' ') {
        quoted.append(String.format("\\u%04x", (int) c));
      } else {
        quoted.append(c);
      }
    }
    return quoted.append('"').toString();
  }
}
