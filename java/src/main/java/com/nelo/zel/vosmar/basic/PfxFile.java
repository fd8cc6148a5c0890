package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** PKCS&nbsp;#12 files (RFC&nbsp;7292): keys with their chains, for and from other programs. */
public final class PfxFile {
  private PfxFile() {}

  /**
   * Writes entries of a key database, each with its key and chain.
   *
   * @param db the key database
   * @param target the file
   * @param targetPassword the password of that file
   * @param labels the labels of the entries, one at least
   * @throws CMSKeyDatabaseException with {@link ResultCode#KEY_GET_BY_LABEL} when no key has one of
   *     the labels
   */
  public static void write(
      CMSKeyDatabase db, Path target, char[] targetPassword, List<String> labels)
      throws CMSKeyDatabaseException {
    List<String> wanted = List.copyOf(labels);
    if (wanted.isEmpty()) {
      throw new IllegalArgumentException("there is nothing to export");
    }
    // Given two labels or more, the native method loses the first and exports the others. So
    // several labels go behind one that may be lost; a single label is exported as it stands.
    List<String> given = new ArrayList<>(wanted);
    if (wanted.size() > 1) {
      given.add(0, wanted.get(0));
    }
    db.answers.check(
        db.c_ExportToPFXFile(
            db.file, db.password(), target.toString(), new String(targetPassword),
            given.toArray(String[]::new)),
        String.join(", ", wanted));
  }

  /**
   * Imports all keys and certificates of a file.
   *
   * @param db the key database that takes them
   * @param source the file
   * @param sourcePassword the password of that file
   * @throws CMSKeyDatabaseException with {@link ResultCode#PKCS12_PWD_CORRUPTION} when that
   *     password is wrong, with {@link ResultCode#INVALID_PKCS12_DATA} when the file is no PKCS#12
   *     file
   */
  public static void importInto(CMSKeyDatabase db, Path source, char[] sourcePassword)
      throws CMSKeyDatabaseException {
    db.answers.check(
        db.c_ImportFromPFXFile(
            db.file, db.password(), source.toString(), new String(sourcePassword)),
        source);
  }
}
