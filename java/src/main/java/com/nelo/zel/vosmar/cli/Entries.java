package com.nelo.zel.vosmar.cli;

import com.nelo.zel.vosmar.basic.CMSKeyDatabase;
import com.nelo.zel.vosmar.basic.CMSKeyDatabaseException;
import com.nelo.zel.vosmar.basic.Encoding;
import com.nelo.zel.vosmar.basic.KeyItem;
import com.nelo.zel.vosmar.basic.NewCertificateRequest;
import com.nelo.zel.vosmar.basic.SelfSignedCertificate;
import java.nio.file.Path;

/**
 * What can be done with the entries of a key database, of a token and of a certificate store alike. What
 * one of them does not do is an IllegalArgumentException.
 */
interface Entries extends AutoCloseable {
  CMSKeyDatabase.Labels labels() throws CMSKeyDatabaseException;

  KeyItem key(String label) throws CMSKeyDatabaseException;

  KeyItem request(String label) throws CMSKeyDatabaseException;

  void deleteKey(String label) throws CMSKeyDatabaseException;

  void deleteRequest(String label) throws CMSKeyDatabaseException;

  void createSelfSigned(SelfSignedCertificate certificate) throws CMSKeyDatabaseException;

  void createRequest(NewCertificateRequest request) throws CMSKeyDatabaseException;

  /** Only a key database has a default key. */
  void receive(Path source, Encoding encoding, boolean makeDefault) throws CMSKeyDatabaseException;

  void addCa(String label, Path source, Encoding encoding) throws CMSKeyDatabaseException;

  boolean isRenewal(byte[] certificate) throws CMSKeyDatabaseException;

  void renew(byte[] certificate) throws CMSKeyDatabaseException;

  void extract(String label, Path target, Encoding encoding) throws CMSKeyDatabaseException;

  void extractRequest(String label, Path target) throws CMSKeyDatabaseException;

  /** Puts a key database beside a token; without a password its stash file opens it. */
  void useSecondary(Path database, char[] password);

  @Override
  void close();
}
