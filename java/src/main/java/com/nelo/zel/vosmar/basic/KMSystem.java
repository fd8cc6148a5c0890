package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.internal.NativeLibrary;

/**
 * The key management library as a whole: starting it, stopping it, its tracing and its
 * cryptographic mode.
 *
 * <p>The library starts by itself when a key database is created or opened. A program calls {@link
 * #enableFips} or {@link #start(boolean, boolean)} before that when it wants the FIPS mode or
 * traces.
 */
public final class KMSystem {
  private static boolean running;

  private KMSystem() {}

  /**
   * Restricts the library to approved algorithms and key sizes.
   *
   * @param requireValidatedProvider insist on OpenSSL's validated {@code fips} provider as well
   * @throws CMSKeyDatabaseException with {@link ResultCode#UNSUPPORTED_OPTION} when that provider
   *     is required and not installed
   * @throws IllegalStateException when the library is running: the mode is chosen before
   */
  public static synchronized void enableFips(boolean requireValidatedProvider)
      throws CMSKeyDatabaseException {
    if (running) {
      throw new IllegalStateException("the key management library is running");
    }
    NativeLibrary.load();
    check(c_enableFIPSMode(true, requireValidatedProvider), "FIPS mode");
  }

  /**
   * Starts the library unless it is running.
   *
   * @throws CMSKeyDatabaseException when it cannot be started
   */
  public static synchronized void start() throws CMSKeyDatabaseException {
    start(false, false);
  }

  /**
   * Starts the library unless it is running.
   *
   * <p>Traces hold secrets in the clear, passwords included: they are for a test system. They are
   * written to the working directory.
   *
   * @param libraryTrace whether the library traces to {@code jnitrace}
   * @param bridgeLog whether the native methods log to {@code vsmjdbg.log}, and the library to
   *     {@code vsmcdbg.log}
   * @throws CMSKeyDatabaseException when it cannot be started
   */
  public static synchronized void start(boolean libraryTrace, boolean bridgeLog)
      throws CMSKeyDatabaseException {
    if (!running) {
      NativeLibrary.load();
      check(c_ZELKMInitDebug(libraryTrace, bridgeLog), "starting");
      running = true;
    }
  }

  /**
   * Stops the library: closes its traces and wipes the keys that it holds in memory. No other
   * thread may be inside an operation. Opening a key database starts it again.
   */
  public static synchronized void stop() {
    if (running) {
      c_ZELKMCleanAll();
      running = false;
    }
  }

  /**
   * Whether keys of more than 512 bits are allowed.
   *
   * @return true unless the library is restricted to weak cryptography
   */
  public static boolean isStrongCryptographyAvailable() {
    NativeLibrary.load();
    return c_IsUSSharedLibraryLoaded();
  }

  /** Prints the version of the native library to standard output. */
  public static void printVersion() {
    NativeLibrary.load();
    c_ShowLibInfo();
  }

  private static void check(int code, String what) throws CMSKeyDatabaseException {
    if (code != 0) {
      throw new CMSKeyDatabaseException(code, what);
    }
  }

  private static native boolean c_IsUSSharedLibraryLoaded();

  private static native int c_enableFIPSMode(boolean fipsMode, boolean requireValidatedProvider);

  private static native int c_ZELKMInitDebug(boolean traceOn, boolean logOn);

  private static native int c_ZELKMInit(boolean traceOn);

  private static native int c_ZELKMCleanAll();

  private static native int c_ShowLibInfo();
}
