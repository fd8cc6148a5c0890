package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CertificateIssue;
import com.nelo.zel.vosmar.basic.SignatureAlgorithm;
import java.nio.file.Path;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert issue}. */
@Command(name = "issue", description = "Issues a certificate for a request.")
final class CertIssue extends DatabaseCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the issuer's key.")
  private String label;

  @Option(
      names = {"-r", "--request"},
      required = true,
      paramLabel = "FILE",
      description = "The request, in Base64.")
  private Path request;

  @Mixin private TargetFile target;

  @Option(
      names = "--days",
      defaultValue = "365",
      paramLabel = "DAYS",
      description = "The period of validity; ${DEFAULT-VALUE} when not given.")
  private int days;

  @Option(
      names = "--serial",
      defaultValue = "",
      paramLabel = "NUMBER",
      description = "The serial number, or hexadecimal after 0x; random when not given.")
  private String serialNumber;

  @Option(
      names = "--signature",
      paramLabel = "DIGEST",
      description = "${COMPLETION-CANDIDATES}; chosen by the strength of the key when not given.")
  private SignatureAlgorithm signature;

  @Override
  void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.certificates().issue(
        new CertificateIssue(label, request, target.path())
            .validFor(days)
            .numbered(serialNumber)
            .signedWith(signature)
            .writtenAs(target.encoding()));
    out.print("wrote " + target.path(), Map.of("written", target.path()));
  }
}
