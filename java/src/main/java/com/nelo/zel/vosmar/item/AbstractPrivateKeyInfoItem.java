package com.nelo.zel.vosmar.item;

import java.util.Arrays;
import javax.security.auth.Destroyable;

/**
 * A private key in the clear: the PrivateKeyInfo of PKCS&nbsp;#8 (RFC&nbsp;5958, section 2).
 *
 * <p>The item owns the only copy of the bytes that its package keeps. {@link #close()} wipes it, so
 * an item belongs in a try-with-resources statement.
 */
public abstract class AbstractPrivateKeyInfoItem implements Destroyable, AutoCloseable {
  private final byte[] der;
  private boolean destroyed;

  /**
   * Makes an item that takes the bytes over.
   *
   * @param der a DER PrivateKeyInfo; wiped when the item is destroyed
   */
  protected AbstractPrivateKeyInfoItem(byte[] der) {
    this.der = der;
  }

  /**
   * The encoding.
   *
   * @return a copy, which the caller wipes after use
   * @throws IllegalStateException when the item has been destroyed
   */
  public synchronized byte[] der() {
    if (destroyed) {
      throw new IllegalStateException("the private key has been wiped");
    }
    return der.clone();
  }

  /** Wipes the key. */
  @Override
  public synchronized void destroy() {
    Arrays.fill(der, (byte) 0);
    destroyed = true;
  }

  @Override
  public synchronized boolean isDestroyed() {
    return destroyed;
  }

  /** Wipes the key. */
  @Override
  public void close() {
    destroy();
  }

  @Override
  public String toString() {
    return "PrivateKeyInfoItem[" + der.length + " bytes]";
  }
}
