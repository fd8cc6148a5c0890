package com.nelo.zel.vosmar.basic;

import com.nelo.zel.vosmar.internal.NativeLibrary;
import java.util.Map;
import java.util.Optional;
import java.util.concurrent.ConcurrentHashMap;

/**
 * A failure of the key management library, told by its result code and the code's name.
 *
 * <p>The message names what failed, why, the code and its name: {@code server.kdb: the password is
 * wrong (16, ZELKM_ERR_DATABASE_INVALID_PASSWORD)}.
 */
public class CMSKeyDatabaseException extends Exception {
  private static final long serialVersionUID = 1L;

  private static final Map<Integer, String> NAMES = new ConcurrentHashMap<>();

  private final int code;
  private final String subject;

  /**
   * Makes an exception for a result code.
   *
   * @param code the result code, never 0
   * @param subject what the operation worked on: a file, or a file and a label
   */
  public CMSKeyDatabaseException(int code, String subject) {
    super(
        subject + ": " + ResultCode.explanationOf(code) + " (" + code + ", " + nameOf(code) + ")");
    this.code = code;
    this.subject = subject;
  }

  /**
   * Makes an exception for a result code.
   *
   * @param reason the result code
   * @param subject what the operation worked on: a file, or a file and a label
   */
  public CMSKeyDatabaseException(ResultCode reason, String subject) {
    this(reason.code(), subject);
  }

  /**
   * Why the operation failed.
   *
   * @return the result code's constant; empty for a number that the library does not know
   */
  public Optional<ResultCode> reason() {
    return ResultCode.of(code);
  }

  /**
   * What kind of failure it is.
   *
   * @return the result code's kind; {@link ResultKind#OTHER} for a number that the library does not
   *     know
   */
  public ResultKind kind() {
    return reason().map(ResultCode::kind).orElse(ResultKind.OTHER);
  }

  /**
   * The result code.
   *
   * @return a number from 1 to 151
   */
  public int code() {
    return code;
  }

  /**
   * The name of the result code.
   *
   * @return a name that begins with {@code ZELKM_ERR_}
   */
  public String codeName() {
    return nameOf(code);
  }

  /**
   * What the operation worked on.
   *
   * @return a file, or a file and a label
   */
  public String subject() {
    return subject;
  }

  /**
   * The name of a result code.
   *
   * @param code a number from 1 to 151
   * @return its name, which begins with {@code ZELKM_ERR_}; a remark in its place for other numbers
   */
  public static String nameOf(int code) {
    buildNames();
    return NAMES.getOrDefault(code, "no known code");
  }

  private static synchronized void buildNames() {
    if (NAMES.isEmpty()) {
      NativeLibrary.load();
      c_BuildErrCodeNameTable();
    }
  }

  /** Takes one row of the table of names; called by the native library. */
  private static boolean addCMSErrCode(int code, String name) {
    NAMES.put(code, name);
    return true;
  }

  private static native boolean c_BuildErrCodeNameTable();
}
