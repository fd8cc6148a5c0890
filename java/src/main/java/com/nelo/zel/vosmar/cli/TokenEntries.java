package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.CryptographicToken;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.KeyItem;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** The entries of a token. */
record TokenEntries(CryptographicToken token) implements Entries {
  /** Personal keys first, then the certificates of signers. */
  @Override
  public CMSKeyDatabase.Labels labels() throws CMSKeyDatabaseException {
    CryptographicToken.Labels labels = token.labels();
    List<String> keys = new ArrayList<>(labels.personal());
    keys.addAll(labels.signers());
    return new CMSKeyDatabase.Labels(keys, labels.requests());
  }

  @Override
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return token.key(label);
  }

  @Override
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    return token.request(label);
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    token.deleteKey(label);
  }

  @Override
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    token.deleteRequest(label);
  }

  @Override
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    token.certificates().createSelfSigned(certificate);
  }

  @Override
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    token.certificates().createRequest(request);
  }

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    if (makeDefault) {
      throw new IllegalArgumentException("a token has no default key");
    }
    token.certificates().receive(source, encoding);
  }

  @Override
  public void addCa(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    token.certificates().addSigner(label, source, encoding);
  }

  @Override
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return token.certificates().isRenewal(certificate);
  }

  @Override
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    token.certificates().renew(certificate);
  }

  @Override
  public void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException {
    token.certificates().extract(label, target, encoding);
  }

  @Override
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    token.certificates().extractRequest(label, target);
  }

  @Override
  public void useSecondary(Path database, char[] password) {
    token.useSecondaryKeyDatabase(database, password);
  }

  @Override
  public void close() {
    token.close();
  }
}
