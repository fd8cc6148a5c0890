package com.nelo.zel.vosmar.item;

import java.util.Arrays;

/** Bytes in BER encoding that are handed on without being looked into. */
public abstract class AbstractBERObject {
  private final byte[] bytes;

  /**
   * Makes an object over a copy of the bytes.
   *
   * @param bytes a complete BER encoding
   */
  protected AbstractBERObject(byte[] bytes) {
    this.bytes = bytes.clone();
  }

  /**
   * The encoding.
   *
   * @return a copy, the caller's own
   */
  public byte[] bytes() {
    return bytes.clone();
  }

  /** Objects of one class are equal when their bytes are. */
  @Override
  public boolean equals(Object other) {
    return other instanceof AbstractBERObject ber
        && ber.getClass() == getClass()
        && Arrays.equals(bytes, ber.bytes);
  }

  @Override
  public int hashCode() {
    return Arrays.hashCode(bytes);
  }

  @Override
  public String toString() {
    return "BERObject[" + bytes.length + " bytes]";
  }
}
