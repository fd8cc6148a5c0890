package com.nelo.zel.vosmar.basic;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;

class PrivateKeyInfoItemTest {
  @Test
  void closingWipesTheBytesItTookOver() {
    byte[] key = {1, 2, 3};
    PrivateKeyInfoItem item = new PrivateKeyInfoItem(key);
    assertArrayEquals(new byte[] {1, 2, 3}, item.der());

    item.close();

    assertArrayEquals(new byte[3], key);
    assertTrue(item.isDestroyed());
    assertThrows(IllegalStateException.class, item::der);
  }
}
