package com.nelo.zel.vosmar.cli.view;

import com.nelo.zel.vosmar.basic.CertificateItem;
import com.nelo.zel.vosmar.basic.KeyItem;
import java.security.GeneralSecurityException;
import java.security.MessageDigest;
import java.util.HexFormat;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** What people and programs get to see of an entry. Times are in ISO&nbsp;8601, UTC. */
public final class KeyView {
  private final Map<String, Object> data = new LinkedHashMap<>();
  private final StringBuilder text = new StringBuilder();

  private KeyView() {}

  /**
   * Looks at an entry.
   *
   * @param item a key, a certificate or a pending request
   * @return what there is to see
   * @throws GeneralSecurityException when the certificate cannot be read
   */
  public static KeyView of(KeyItem item) throws GeneralSecurityException {
    KeyView view = new KeyView();
    view.add("Label", "label", item.label());
    if (item.request() != null) {
      view.add("Kind", "kind", "pending request");
      view.add("Subject", "subject", item.request().subject().toString());
    }
    if (item.certificate() != null) {
      view.addCertificate(item.certificate());
    }
    view.add("Key", "keyAlgorithm", item.algorithm().toString());
    view.add("Key size", "keySize", item.keySize());
    view.add("Private key", "privateKey", item.hasPrivateKey());
    view.add("Trusted", "trusted", item.isTrusted());
    view.add("Default", "default", item.isDefault());
    view.addChain(item.certificates());
    return view;
  }

  /** {@return one line for each property} */
  public String text() {
    return text.toString().stripTrailing();
  }

  /** {@return the properties by their names, in order} */
  public Map<String, Object> data() {
    return data;
  }

  private void addCertificate(CertificateItem certificate) throws GeneralSecurityException {
    byte[] fingerprint = MessageDigest.getInstance("SHA-256").digest(certificate.der());
    add("Subject", "subject", certificate.subject().toString());
    add("Issuer", "issuer", certificate.issuer().toString());
    add("Serial", "serial", certificate.x509().getSerialNumber().toString(16));
    add("Valid from", "notBefore", certificate.notBefore().toString());
    add("Valid until", "notAfter", certificate.notAfter().toString());
    add("Signature", "signatureAlgorithm", certificate.signatureAlgorithmName());
    add(
        "SHA-256",
        "sha256",
        HexFormat.ofDelimiter(":").withUpperCase().formatHex(fingerprint));
  }

  private void addChain(List<CertificateItem> certificates) {
    List<String> issuers =
        certificates.stream().skip(1).map(issuer -> issuer.subject().toString()).toList();
    data.put("chain", issuers);
    for (String issuer : issuers) {
      addLine("Issued by", issuer);
    }
  }

  private void add(String title, String name, Object value) {
    data.put(name, value);
    addLine(title, value instanceof Boolean truth ? (truth ? "yes" : "no") : value);
  }

  private void addLine(String title, Object value) {
    text.append(String.format("%-13s%s%n", title + ":", value));
  }
}
