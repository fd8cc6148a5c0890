package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import java.nio.file.Path;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert extract}. */
@Command(name = "extract", description = "Writes a certificate to a file.")
final class CertExtract extends DatabaseCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the certificate.")
  private String label;

  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "The file to write.")
  private Path target;

  @Option(names = "--der", description = "Write DER instead of Base64.")
  private boolean der;

  @Override
  void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.extractCertificate(label, target, der ? Encoding.DER : Encoding.BASE64);
    out.print("wrote " + target, Map.of("written", target));
  }
}
