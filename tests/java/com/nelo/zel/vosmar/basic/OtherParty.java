package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;
import java.time.Duration;

/** Whose keys and certificates are brought to a store: a CA with a key database of its own. */
final class OtherParty implements AutoCloseable {
  private final Path file;
  private final CMSKeyDatabase db;

  OtherParty(Path file) throws CMSKeyDatabaseException {
    this.file = file;
    db = CMSKeyDatabase.create(file, TestDatabase.password(), Duration.ZERO);
    db.certificates().createSelfSigned(TestDatabase.certificate("ca"));
  }

  /** The file of the key database. */
  Path file() {
    return file;
  }

  /** A public key that nobody else has, as a DER SubjectPublicKeyInfo. */
  byte[] publicKey() throws CMSKeyDatabaseException {
    return db.key("ca").subjectPublicKeyInfo().bytes();
  }

  /** The certificate of a key, which is made when it is asked for first. */
  byte[] certificate(String label) throws CMSKeyDatabaseException {
    return keyOf(label).certificate().der();
  }

  /** The same in a file, in Base64. */
  Path certificateFile(String label) throws CMSKeyDatabaseException {
    Path target = file.resolveSibling(label + ".pem");
    keyOf(label);
    db.certificates().extract(label, target, Encoding.BASE64);
    return target;
  }

  /** The key itself, as PKCS #8. */
  byte[] privateKey(String label) throws CMSKeyDatabaseException {
    return clear(keyOf(label));
  }

  /** A pending request, whose file lies beside the key database. */
  KeyItem request(String label) throws CMSKeyDatabaseException {
    if (!db.labels().requests().contains(label)) {
      db.certificates().createRequest(
          new NewCertificateRequest(
              label, DNItem.parse("CN=" + label), KeyType.ec(256), requestFile(label)));
    }
    return db.request(label);
  }

  Path requestFile(String label) {
    return file.resolveSibling(label + ".csr");
  }

  /** The private key of an entry of this party, as PKCS #8. */
  byte[] clear(KeyItem item) throws CMSKeyDatabaseException {
    try (PrivateKeyInfoItem key =
        PrivateKeyEncryption.decrypt(item.privateKey(), TestDatabase.password())) {
      return key.der();
    }
  }

  /** A certificate for the request in that file, in DER. */
  Path issue(Path requestFile) throws CMSKeyDatabaseException {
    Path target = file.resolveSibling("issued.der");
    db.certificates().issue(
        new CertificateIssue("ca", requestFile, target).writtenAs(Encoding.DER));
    return target;
  }

  @Override
  public void close() {
    db.close();
  }

  private KeyItem keyOf(String label) throws CMSKeyDatabaseException {
    if (!db.labels().keys().contains(label)) {
      db.certificates().createSelfSigned(TestDatabase.certificate(label));
    }
    return db.key(label);
  }
}
