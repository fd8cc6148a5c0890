package com.nelo.zel.vosmar.cli.options;

import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.ResultCode;
import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.cert.CertificateException;
import java.security.cert.CertificateFactory;
import picocli.CommandLine.Option;

/** A file to be read, in DER or Base64, which is told from its content. */
public final class SourceFile {
  @Option(
      names = {"-i", "--in"},
      required = true,
      paramLabel = "FILE",
      description = "The file to read.")
  private Path path;

  SourceFile() {}

  /** {@return the file} */
  public Path path() {
    return path;
  }

  /**
   * The form of the file.
   *
   * @return DER or Base64
   * @throws CMSKeyDatabaseException when the file cannot be read
   */
  public Encoding encoding() throws CMSKeyDatabaseException {
    try {
      return Encoding.of(path);
    } catch (IOException unreadable) {
      throw new CMSKeyDatabaseException(ResultCode.FILE_OPEN_TO_READ, path.toString());
    }
  }

  /**
   * The certificate in the file.
   *
   * @return the certificate in DER
   * @throws CMSKeyDatabaseException when the file cannot be read, or holds no certificate
   */
  public byte[] certificate() throws CMSKeyDatabaseException {
    try (InputStream stream = Files.newInputStream(path)) {
      return CertificateFactory.getInstance("X.509").generateCertificate(stream).getEncoded();
    } catch (IOException unreadable) {
      throw new CMSKeyDatabaseException(ResultCode.FILE_OPEN_TO_READ, path.toString());
    } catch (CertificateException noCertificate) {
      throw new CMSKeyDatabaseException(ResultCode.ASN, path.toString());
    }
  }
}
