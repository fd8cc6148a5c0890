package com.nelo.zel.vosmar.cli.cert;

import static java.util.Map.entry;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.cli.command.DatabaseCommand;
import com.nelo.zel.vosmar.cli.options.SourceFile;
import com.nelo.zel.vosmar.cli.view.ExitCode;
import com.nelo.zel.vosmar.cli.view.Json;
import com.nelo.zel.vosmar.cli.view.Output;
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
  protected void run(CMSKeyDatabase database, Output out) throws CMSKeyDatabaseException {
    valid = database.certificates().isValid(source.certificate());
    out.print(
        source.path() + (valid ? " is valid" : " is not valid"),
        Json.object(entry("file", source.path()), entry("valid", valid)));
  }

  @Override
  protected int exitCode() {
    return valid ? ExitCode.OK : ExitCode.FAILED;
  }
}
