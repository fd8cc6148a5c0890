package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.item.AbstractBERObject;

/** Bytes in BER encoding that are handed on without being looked into. */
@SuppressWarnings("exports")
public final class BERObject extends AbstractBERObject {
  /**
   * Makes an object over a copy of the bytes.
   *
   * @param bytes a complete BER encoding
   */
  public BERObject(byte[] bytes) {
    super(bytes);
  }
}
