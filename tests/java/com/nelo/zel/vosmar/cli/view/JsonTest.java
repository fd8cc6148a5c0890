package com.nelo.zel.vosmar.cli.view;

import static java.util.Map.entry;
import static org.junit.jupiter.api.Assertions.assertEquals;

import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;

class JsonTest {
  @Test
  void writesTheMembersOfAnObjectInTheOrderGiven() {
    assertEquals(
        "{\"d\":1,\"c\":2,\"b\":3,\"a\":4,\"e\":5}",
        Json.write(
            Json.object(
                entry("d", 1), entry("c", 2), entry("b", 3), entry("a", 4), entry("e", 5))));
  }

  @Test
  void writesEveryKindOfValue() {
    Map<String, Object> data = new LinkedHashMap<>();
    data.put("text", "a");
    data.put("number", 5);
    data.put("truth", true);
    data.put("nothing", null);
    data.put("list", Arrays.asList("b", 1));
    data.put("empty", List.of());

    assertEquals(
        "{\"text\":\"a\",\"number\":5,\"truth\":true,\"nothing\":null,"
            + "\"list\":[\"b\",1],\"empty\":[]}",
        Json.write(data));
  }

  @Test
  void escapesWhatMayNotStandInAText() {
    assertEquals("\"a\\\"b\\\\c\\u000ad\u00e9\"", Json.write("a\"b\\c\nd\u00e9"));
  }
}
