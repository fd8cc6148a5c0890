package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.DNItem;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.KeyType;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import com.nelo.zel.vosmar.basic.SignatureAlgorithm;
import java.nio.file.Path;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;
import picocli.CommandLine.Parameters;

/** {@code vosmar cert self-sign}. */
@Command(name = "self-sign", description = "Makes a key and a self-signed certificate for it.")
final class CertSelfSign extends DatabaseCommand {
  @Parameters(index = "1", paramLabel = "LABEL", description = "The label of the new entry.")
  private String label;

  @Option(
      names = "--subject",
      required = true,
      paramLabel = "NAME",
      description = "Whom the certificate names, such as CN=www.example.com,O=Example,C=DE.")
  private String subject;

  @Option(
      names = "--key",
      defaultValue = "rsa:2048",
      paramLabel = "TYPE",
      description = "rsa:BITS, ec:BITS or ed25519; ${DEFAULT-VALUE} when not given.")
  private String keyType;

  @Option(
      names = "--days",
      defaultValue = "365",
      paramLabel = "DAYS",
      description = "The period of validity; ${DEFAULT-VALUE} when not given.")
  private int days;

  @Option(
      names = "--signature",
      paramLabel = "DIGEST",
      description = "${COMPLETION-CANDIDATES}; chosen by the strength of the key when not given.")
  private SignatureAlgorithm signature;

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
  void run(CMSKeyDatabase database, Output out) throws Exception {
    SelfSignedCertificate certificate =
        new SelfSignedCertificate(label, DNItem.parse(subject), KeyType.parse(keyType))
            .validFor(days);
    if (signature != null) {
      certificate.signedWith(signature);
    }
    if (defaultKey) {
      certificate.asDefaultKey();
    }
    if (target != null) {
      certificate.writtenTo(target, der ? Encoding.DER : Encoding.BASE64);
    }
    database.createSelfSigned(certificate);
    KeyView view = KeyView.of(database.key(label));
    out.print(view.text(), view.data());
  }
}
