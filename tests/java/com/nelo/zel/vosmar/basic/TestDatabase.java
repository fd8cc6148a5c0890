package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.time.Duration;

/** The key database that tests make for themselves. */
final class TestDatabase {
  private static final String PASSWORD = "correct horse 1!";

  private TestDatabase() {}

  static char[] password() {
    return PASSWORD.toCharArray();
  }

  static Path file(Path folder) {
    return folder.resolve("test.kdb");
  }

  static CMSKeyDatabase create(Path folder) throws CMSKeyDatabaseException {
    return CMSKeyDatabase.create(file(folder), password(), Duration.ZERO);
  }

  static SelfSignedCertificate certificate(String label) {
    return new SelfSignedCertificate(
        label, DNItem.parse("CN=" + label + ",O=Example,C=DE"), KeyType.ec(256));
  }
}
