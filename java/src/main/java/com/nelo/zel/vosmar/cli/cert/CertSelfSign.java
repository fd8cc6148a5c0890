package com.nelo.zel.vosmar.cli.cert;

import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.EntryStore;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import com.nelo.zel.vosmar.cli.command.EntryCommand;
import com.nelo.zel.vosmar.cli.view.KeyView;
import com.nelo.zel.vosmar.cli.view.Output;
import java.nio.file.Path;
import picocli.CommandLine.Command;
import picocli.CommandLine.Mixin;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert self-sign}. */
@Command(name = "self-sign", description = "Makes a key and a self-signed certificate for it.")
final class CertSelfSign extends EntryCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the new entry.")
  private String label;

  @Mixin private NewKeyOptions newKey;

  @Mixin private ValidityOption validity;

  @Option(names = "--default", description = "Make it the default key.")
  private boolean defaultKey;

  @Option(
      names = {"-o", "--out"},
      paramLabel = "FILE",
      description = "Write the certificate to this file as well.")
  private Path target;

  @Option(names = "--der", description = "Write that file in DER instead of Base64.")
  private boolean der;

  @Override
  protected void run(EntryStore store, Output out) throws Exception {
    SelfSignedCertificate certificate =
        new SelfSignedCertificate(label, newKey.subject(), newKey.keyType())
            .validFor(validity.days())
            .signedWith(newKey.signature());
    if (defaultKey) {
      certificate.asDefaultKey();
    }
    if (target != null) {
      certificate.writtenTo(target, der ? Encoding.DER : Encoding.BASE64);
    }
    store.certificates().createSelfSigned(certificate);
    KeyView view = KeyView.of(store.key(label));
    out.print(view.text(), view.data());
  }
}
