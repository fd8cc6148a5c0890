package com.nelo.zel.vosmar.basic;

import java.nio.file.Path;

/** What an {@link EntryStore} can be, with the code by which it refuses what it does not do. */
enum StoreKind {
  DATABASE(ResultCode.UNSUPPORTED_OPTION) {
    @Override
    EntryStore create(Path folder) throws Exception {
      return TestDatabase.create(folder);
    }
  },
  TOKEN(ResultCode.CRYPTOGRAPHIC_TOKEN_NOT_SUPPORT) {
    @Override
    EntryStore create(Path folder) throws Exception {
      return TestToken.create(folder);
    }
  },
  STORE(ResultCode.UNSUPPORTED_OPTION) {
    @Override
    EntryStore create(Path folder) throws Exception {
      TestStores.clear();
      return MSCertificateStore.open("CurrentUser/My", null);
    }
  };

  private final ResultCode refusal;

  StoreKind(ResultCode refusal) {
    this.refusal = refusal;
  }

  ResultCode refusal() {
    return refusal;
  }

  /** An empty store; one that needs a place has it in the folder. */
  abstract EntryStore create(Path folder) throws Exception;
}
