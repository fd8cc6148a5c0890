package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;

/** {@code vosmar cert validate}. */
@Command(
    name = "validate",
    description = "Tells whether a certificate is valid, with a chain that ends at a trusted one.")
final class CertValidate extends DatabaseCommand {
  @Mixin private SourceFile source;

  private boolean valid;

  @Override
  void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    valid = database.certificates().isValid(source.certificate());
    out.print(
        source.path() + (valid ? " is valid" : " is not valid"),
        Map.of("file", source.path(), "valid", valid));
  }

  @Override
  int exitCode() {
    return valid ? ExitCode.OK : ExitCode.FAILED;
  }
}
