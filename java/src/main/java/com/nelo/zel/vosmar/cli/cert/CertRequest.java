package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.AlternativeNames;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import java.util.Map;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert request}. */
@Command(
    name = "request",
    description = "Makes a key and a request for a certificate, to be sent to a CA.")
final class CertRequest extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the new entry.")
  private String label;

  @Mixin private NewKeyOptions newKey;

  @Option(
      names = "--san",
      paramLabel = "NAMES",
      description =
          "Ask for these alternative names too, such as DNS:www.example.com,IP:192.0.2.1; TLS"
              + " clients compare the host with them alone.")
  private String alternativeNames;

  @Option(
      names = {"-o", "--out"},
      required = true,
      paramLabel = "FILE",
      description = "Write the request to this file.")
  private Path target;

  @Override
  protected void run(EntryStore store, Output out) throws CMSKeyDatabaseException {
    NewCertificateRequest request =
        new NewCertificateRequest(label, newKey.subject(), newKey.keyType(), target)
            .signedWith(newKey.signature());
    if (alternativeNames != null) {
      request.alsoNamed(AlternativeNames.parse(alternativeNames));
    }
    store.certificates().createRequest(request);
    out.print("wrote " + target, Map.of("written", target));
  }
}
