package com.nelo.zel.vosmar.basic;

/**
 * The key management library as a whole: starting it, stopping it, its tracing and its cryptographic
 * mode.
 */
public final class KMSystem {
  private KMSystem() {}

  private static native boolean c_IsUSSharedLibraryLoaded();

  private static native int c_enableFIPSMode(boolean fipsMode, boolean requireValidatedProvider);

  private static native int c_ZELKMInitDebug(boolean traceOn, boolean logOn);

  private static native int c_ZELKMInit(boolean traceOn);

  private static native int c_ZELKMCleanAll();

  private static native int c_ShowLibInfo();
}
