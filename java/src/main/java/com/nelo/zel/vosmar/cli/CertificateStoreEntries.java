package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.KeyItem;
import com.nelo.zel.vosmar.basic.MSCertificateStore;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import java.nio.file.Path;
import java.util.List;

/** The entries of a certificate store, which has no requests and renews nothing. */
record CertificateStoreEntries(MSCertificateStore store) implements Entries {
  @Override
  public CMSKeyDatabase.Labels labels() throws CMSKeyDatabaseException {
    return new CMSKeyDatabase.Labels(store.labels().all(), List.of());
  }

  @Override
  public KeyItem key(String label) throws CMSKeyDatabaseException {
    return store.key(label);
  }

  @Override
  public KeyItem request(String label) {
    throw noRequests();
  }

  @Override
  public void deleteKey(String label) throws CMSKeyDatabaseException {
    store.deleteKey(label);
  }

  @Override
  public void deleteRequest(String label) {
    throw noRequests();
  }

  @Override
  public void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException {
    store.createSelfSigned(certificate);
  }

  @Override
  public void createRequest(NewCertificateRequest request) {
    throw noRequests();
  }

  @Override
  public void receive(Path source, Encoding encoding, boolean makeDefault) {
    throw noRequests();
  }

  @Override
  public void addCa(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException {
    store.addSigner(label, source, encoding);
  }

  @Override
  public boolean isRenewal(byte[] certificate) {
    throw noRenewal();
  }

  @Override
  public void renew(byte[] certificate) {
    throw noRenewal();
  }

  @Override
  public void extract(String label, Path target, Encoding encoding) {
    throw new IllegalArgumentException("certificates of a certificate store are not written to files");
  }

  @Override
  public void extractRequest(String label, Path target) {
    throw noRequests();
  }

  @Override
  public void useSecondary(Path database, char[] password) {
    throw new IllegalArgumentException("a secondary key database stands beside a token only");
  }

  @Override
  public void close() {
    store.close();
  }

  private static IllegalArgumentException noRenewal() {
    return new IllegalArgumentException(
        "a certificate of a certificate store is not renewed in its place");
  }

  private static IllegalArgumentException noRequests() {
    return new IllegalArgumentException("a certificate store has no requests");
  }
}
