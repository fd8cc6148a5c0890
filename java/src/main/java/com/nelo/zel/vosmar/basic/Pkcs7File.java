package com.nelo.zel.vosmar.basic;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;

/** PKCS&nbsp;#7 files (RFC&nbsp;2315), as bundles of certificates. */
public final class Pkcs7File {
  private Pkcs7File() {}

  /**
   * Reads the certificates of a file.
   *
   * @param source the file
   * @param encoding the form of the file
   * @return the certificates, in the order of the file
   * @throws CMSKeyDatabaseException with {@link ResultCode#FILE_OPEN_TO_READ} when the file cannot
   *     be read, with {@link ResultCode#ASN} when it is no PKCS&nbsp;#7
   */
  public static List<CertificateItem> read(Path source, Encoding encoding)
      throws CMSKeyDatabaseException {
    KMSystem.start();
    try (CMSKeyDatabase none = new CMSKeyDatabase(source, new char[0])) {
      CertificateItem[] certificates =
          none.c_ExtractCertFromPKCS7Data(source.toString(), encoding.isBase64());
      ResultCode reason =
          Files.isReadable(source) ? ResultCode.ASN : ResultCode.FILE_OPEN_TO_READ;
      return List.of(none.answers.given(certificates, reason.code()));
    }
  }
}
