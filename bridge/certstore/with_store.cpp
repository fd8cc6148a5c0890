#include "bridge/certstore/with_store.h"

#include <cstring>

#include "bridge/marshal/trace_texts.h"

namespace zel::bridge {

namespace {

Store takeStoreTracing(HeldStrings& held, jstring cspName, jstring password,
                       TextTrace tracePassword) {
  const char* name = held.takeIfGiven(cspName, TextTrace{"JNI_DEBUG......cCSPName = %s\n"},
                                      FixedTrace{"JNI_DEBUG......cCSPName = NULL\n"});
  const char* pwd =
      held.takeIfGiven(password, tracePassword, FixedTrace{"JNI_DEBUG......cPassword = NULL\n"});
  return {name, pwd};
}

}  // namespace

Store takeStore(HeldStrings& held, jstring cspName, jstring password) {
  return takeStoreTracing(held, cspName, password, TextTrace{"JNI_DEBUG......cPassword = %s\n"});
}

Store takeStoreTracedAsToken(HeldStrings& held, jstring cspName, jstring password) {
  return takeStoreTracing(held, cspName, password, kTraceTokenPassword);
}

int openStore(const Store& store, int* handle) {
  KeyDbLocator locator;
  std::memset(&locator, 0, KEYDB_LOCATOR_OPEN_EXTENT);
  locator.type = KEYDB_LOCATOR_CERTIFICATE_STORE;
  locator.tokenLabel = store.cspName;
  locator.password = store.password;
  return ZELKM_OpenKeyDbX(&locator, handle);
}

}  // namespace zel::bridge
