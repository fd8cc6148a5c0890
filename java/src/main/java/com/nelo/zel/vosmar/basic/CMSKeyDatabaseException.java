package com.nelo.zel.vosmar.basic;

import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;

/** A failure of the key management library, told by its result code and the code's name. */
public class CMSKeyDatabaseException extends Exception {
  private static final long serialVersionUID = 1L;

  private static final Map<Integer, String> NAMES = new ConcurrentHashMap<>();

  private final int code;

  /**
   * Makes an exception for a result code.
   *
   * @param code the result code, never 0
   * @param message what was attempted
   */
  public CMSKeyDatabaseException(int code, String message) {
    super(message);
    this.code = code;
  }

  /**
   * The result code.
   *
   * @return a number from 1 to 151
   */
  public int code() {
    return code;
  }

  /** Takes one row of the table of names; called by the native library. */
  private static boolean addCMSErrCode(int code, String name) {
    NAMES.put(code, name);
    return true;
  }

  private static native boolean c_BuildErrCodeNameTable();
}
