package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.KeyItem;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import java.nio.file.Path;

/** The entries of a key database. */
record DatabaseEntries(CMSKeyDatabase database) implements Entries {
  @Override
  public CMSKeyDatabase.Labels labels() throws CMSKeyDatabaseException {
    return database.labels();
  }

  @Override
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return database.key(label);
  }

  @Override
  public KeyItem request(String label) throws CMSKeyDatabaseException {
    return database.request(label);
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    database.deleteKey(label);
  }

  @Override
  public void deleteRequest(String label) throws CMSKeyDatabaseException {
    database.deleteRequest(label);
  }

  @Override
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    database.certificates().createSelfSigned(certificate);
  }

  @Override
  public void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException {
    database.certificates().createRequest(request);
  }

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault)
      throws CMSKeyDatabaseException {
    database.certificates().receive(source, encoding, makeDefault);
  }

  @Override
  public void addCa(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    database.certificates().addCa(label, source, encoding);
  }

  @Override
  public boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException {
    return database.certificates().isRenewal(certificate);
  }

  @Override
  public void renew(byte[] certificate) throws CMSKeyDatabaseException {
    database.certificates().renew(certificate);
  }

  @Override
  public void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException {
    database.certificates().extract(label, target, encoding);
  }

  @Override
  public void extractRequest(String label, Path target) throws CMSKeyDatabaseException {
    database.certificates().extractRequest(label, target);
  }

  @Override
  public void useSecondary(Path secondary, char[] password) {
    throw new IllegalArgumentException("a secondary key database stands beside a token only");
  }

  @Override
  public void close() {
    database.close();
  }
}
