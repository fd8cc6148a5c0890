package com.nelo.zel.vosmar.basic;

import java.util.ArrayList;
import java.util.HexFormat;
import java.util.List;

/** All that a key database holds, in its order, so that two can be compared. */
record DatabaseContent(List<Entry> keys, List<Entry> requests) {
  /** Documents and keys are in hexadecimal DER: the chain, or the request. */
  record Entry(
      String label,
      List<String> documents,
      String privateKey,
      boolean trusted,
      boolean isDefault) {}

  static DatabaseContent of(CMSKeyDatabase db) throws CMSKeyDatabaseException {
    List<Entry> keys = new ArrayList<>();
    for (String label : db.labels().keys()) {
      KeyItem item = db.key(label);
      keys.add(
          entry(db, item, item.certificates().stream().map(each -> hex(each.der())).toList()));
    }
    List<Entry> requests = new ArrayList<>();
    for (String label : db.labels().requests()) {
      KeyItem item = db.request(label);
      requests.add(entry(db, item, List.of(hex(item.request().der()))));
    }
    return new DatabaseContent(keys, requests);
  }

  private static Entry entry(CMSKeyDatabase db, KeyItem item, List<String> documents)
      throws CMSKeyDatabaseException {
    return new Entry(
        item.label(), documents, privateKey(db, item), item.isTrusted(), item.isDefault());
  }

  private static String privateKey(CMSKeyDatabase db, KeyItem item)
      throws CMSKeyDatabaseException {
    if (!item.hasPrivateKey()) {
      return "";
    }
    try (PrivateKeyInfoItem key =
        PrivateKeyEncryption.decrypt(item.privateKey(), db.password().toCharArray())) {
      return hex(key.der());
    }
  }

  private static String hex(byte[] bytes) {
    return HexFormat.of().formatHex(bytes);
  }
}
