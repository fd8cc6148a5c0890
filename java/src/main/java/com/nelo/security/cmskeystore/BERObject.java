package com.nelo.security.cmskeystore;

import java.util.Arrays;

/** Bytes in BER encoding that are handed on without being looked into. */
public final class BERObject {
  private final byte[] bytes;

  /**
   * Makes an object over a copy of the bytes.
   *
   * @param bytes a complete BER encoding
   */
  public BERObject(byte[] bytes) {
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

  @Override
  public boolean equals(Object other) {
    return other instanceof BERObject ber && Arrays.equals(bytes, ber.bytes);
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
