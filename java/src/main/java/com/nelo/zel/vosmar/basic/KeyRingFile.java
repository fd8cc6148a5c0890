package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/** Key ring files: whole key databases as PKCS&nbsp;#12 files (RFC&nbsp;7292). */
public final class KeyRingFile {
  private KeyRingFile() {}

  /**
   * Writes a whole key database.
   *
   * @param db the key database
   * @param target the file, which does not exist yet
   * @param targetPassword the password that it gets
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_ALREADY_EXISTS} when the file
   *     exists
   */
  public static void write(CMSKeyDatabase db, Path target, char[] targetPassword)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_Kdb2Kyr(db.file, db.password(), target.toString(), new String(targetPassword)),
        target);
  }

  /**
   * Makes a key database out of a file.
   *
   * @param source the file
   * @param sourcePassword its password
   * @param file the key database, which does not exist yet
   * @param password the password that the key database gets
   * @return the new database
   * @throws CMSKeyDatabaseException with {@link ResultCode#DATABASE_ALREADY_EXISTS} when the key
   *     database exists
   */
  public static CMSKeyDatabase toKeyDatabase(
      Path source, char[] sourcePassword, Path file, char[] password)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    CMSKeyDatabase db = new CMSKeyDatabase(file, password);
    int code = db.c_Kyr2Kdb(source.toString(), new String(sourcePassword), db.file, db.password());
    return db.openedUnless(code);
  }
}
