package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CertificateIssue;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.options.TargetFile;
import com.nelo.zel.vosmar.cli.view.Output;
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

  @Mixin private ValidityOption validity;

  @Option(
      names = "--serial",
      defaultValue = "",
      paramLabel = "NUMBER",
      description = "The serial number, or hexadecimal after 0x; random when not given.")
  private String serialNumber;

  @Mixin private SignatureOption signature;

  @Override
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    database.certificates().issue(
        new CertificateIssue(label, request, target.path())
            .validFor(validity.days())
            .numbered(serialNumber)
            .signedWith(signature.algorithm())
            .writtenAs(target.encoding()));
    out.print("wrote " + target.path(), Map.of("written", target.path()));
  }
}
