package com.nelo.zel.vosmar.internal;

import java.util.List;

/**
 * What native methods answer about one thing that they worked on, and how their failures are told.
 *
 * <p>Most answer a result code. Some answer only yes or no, or an object or nothing; when such a
 * method fails, what it worked on is looked at again to learn the reason, so the reason told may be
 * of a moment later.
 *
 * @param <X> the exception that tells failures
 */
public final class Answers<X extends Exception> {
  // Of the result codes, whose enum lies in a package above, those that are told here.
  // The numbers below are written by script/result-codes.
  private static final int DATABASE_READ = 12;
  private static final int NEW_PASSWORD = 69;
  private static final int PASSWORD_EXPIRATION_TIME = 70;
  private static final int FILE_WRITE = 91;
  private static final int KEY_GET_BY_LABEL = 117;
  // The numbers above are written by script/result-codes.

  private final String subject;
  private final Failures<X> failures;

  /**
   * Makes the exceptions of a package.
   *
   * @param <X> their class
   */
  @FunctionalInterface
  public interface Failures<X extends Exception> {
    /**
     * Makes an exception.
     *
     * @param code the result code, never 0
     * @param subject what the operation worked on
     * @return the exception, to be thrown
     */
    X of(int code, String subject);
  }

  /**
   * Lists labels to learn a reason.
   *
   * @param <X> the exception that tells failures
   */
  @FunctionalInterface
  public interface Listing<X extends Exception> {
    /**
     * Lists the labels.
     *
     * @return those of one kind of entries
     * @throws X when nothing can be read at all
     */
    List<String> labels() throws X;
  }

  /**
   * Answers about one subject.
   *
   * @param subject what the operations work on, as messages tell it
   * @param failures makes the exceptions
   */
  public Answers(String subject, Failures<X> failures) {
    this.subject = subject;
    this.failures = failures;
  }

  /**
   * Tells a failure by its code.
   *
   * @param code a result code
   * @throws X unless the code is 0
   */
  public void check(int code) throws X {
    if (code != 0) {
      throw failure(code);
    }
  }

  /**
   * Tells the failure of an operation on one entry, or on another file.
   *
   * @param code a result code
   * @param what the entry or file
   * @throws X unless the code is 0
   */
  public void check(int code, Object what) throws X {
    if (code != 0) {
      throw failure(code, what);
    }
  }

  /**
   * A failure of a whole operation.
   *
   * @param code its result code
   * @return the exception, to be thrown
   */
  public X failure(int code) {
    return failures.of(code, subject);
  }

  /**
   * A failure at one entry, or at another file.
   *
   * @param code its result code
   * @param what the entry or file
   * @return the exception, to be thrown
   */
  public X failure(int code, Object what) {
    return failures.of(code, subject + ": " + what);
  }

  /**
   * What a native method gave that keeps its reason to itself.
   *
   * @param <T> the class of what it gives
   * @param given what it gave, or null
   * @param code the code of its likely reason
   * @return the same
   * @throws X with that code when it gave nothing
   */
  public <T> T given(T given, int code) throws X {
    if (given == null) {
      throw failure(code);
    }
    return given;
  }

  /**
   * What a native method gave that keeps its reason to itself.
   *
   * @param <T> the class of what it gives
   * @param given what it gave, or null
   * @param code the code of its likely reason
   * @param what what it worked on
   * @return the same
   * @throws X with that code when it gave nothing
   */
  public <T> T given(T given, int code, Object what) throws X {
    if (given == null) {
      throw failure(code, what);
    }
    return given;
  }

  /**
   * What has a label. An entry that is listed and yet not given cannot be read.
   *
   * @param <T> the class of items
   * @param item the item, or null when the native method gave none
   * @param label its label
   * @param listing lists the labels of its kind
   * @return the item
   * @throws X with code 117 when nothing has the label
   */
  public <T> T found(T item, String label, Listing<X> listing) throws X {
    if (item == null) {
      throw failure(listing.labels().contains(label) ? DATABASE_READ : KEY_GET_BY_LABEL, label);
    }
    return item;
  }

  /**
   * What was looked for. Nothing found and nothing readable look alike; listing the labels tells
   * them apart.
   *
   * @param <T> the class of items
   * @param items the items, or null when the native method gave none
   * @param listing lists any labels
   * @return the items; empty when there are none
   * @throws X when nothing can be read
   */
  public <T> List<T> all(T[] items, Listing<X> listing) throws X {
    if (items == null) {
      listing.labels();
      return List.of();
    }
    return List.of(items);
  }

  /**
   * Whether something holds. A no and nothing readable look alike.
   *
   * @param yes what the native method answered
   * @param listing lists any labels
   * @return the same
   * @throws X when nothing can be read
   */
  public boolean holds(boolean yes, Listing<X> listing) throws X {
    if (!yes) {
      listing.labels();
    }
    return yes;
  }

  /**
   * Whether something holds for an entry. A no and no such entry look alike.
   *
   * @param yes what the native method answered
   * @param label the label of the entry
   * @param listing lists the labels of its kind
   * @return the same
   * @throws X with code 117 when nothing has the label
   */
  public boolean holdsFor(boolean yes, String label, Listing<X> listing) throws X {
    if (!yes && !listing.labels().contains(label)) {
      throw failure(KEY_GET_BY_LABEL, label);
    }
    return yes;
  }

  /**
   * Why a password was not changed: the new one was refused when the old one fits.
   *
   * @param opened the result code of opening with the old password
   * @return the exception, to be thrown
   */
  public X passwordUnchanged(int opened) {
    boolean oldPasswordFits = opened == 0 || opened == PASSWORD_EXPIRATION_TIME;
    return failure(oldPasswordFits ? NEW_PASSWORD : opened);
  }

  /**
   * Why a password was not stashed: the file cannot be written when the password fits.
   *
   * @param opened the result code of opening with the password
   * @return the exception, to be thrown
   */
  public X passwordUnstashed(int opened) {
    return failure(opened == 0 ? FILE_WRITE : opened);
  }
}
