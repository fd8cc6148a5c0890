#include <cstdlib>
#include <cstring>

#include "tests/recording_double/library_call.h"

using namespace zel::test;

/*
 * Three kinds of record may be the caller's own work: a DN and the nodes of a label list are made
 * with malloc, an EPKI record with ZELKM_Malloc. What they point to goes with them.
 */

namespace {

/** clear() is an Init function: it clears the record that it is given the address of. */
template <typename Record>
void clear(const char* function, Record** record) {
  LibraryCall call(function, recorder().owned.nameOf(*record));
  call.done();
  if (*record == nullptr) return call.wrong("is given no record");
  std::memset(*record, 0, sizeof(Record));
}

void fail(const char* function, const char* what) {
  recorder().error(std::string(function) + " " + what);
}

void releaseText(const char* function, char* text) {
  if (text == nullptr) return;
  if (!recorder().owned.give(Kind::kText, text)) {
    return fail(function, "finds a text that ZELKM_Strdup did not make");
  }
  std::free(text);
}

void releaseOwnLabelList(const char* function, ZELKMLabelList* list) {
  const HostCode host;
  LibraryCall(function, recorder().owned.nameOf(list)).done();
  while (list != nullptr) {
    ZELKMLabelList* next = list->next;
    releaseText(function, list->label);
    if (!recorder().owned.give(Kind::kBlock, list)) return fail(function, "finds an unknown node");
    std::free(list);
    list = next;
  }
}

void releaseOwnEpki(const char* function, ZELKMEPKIItem* epki) {
  const HostCode host;
  unsigned char* bytes = epki->berData;
  if (!recordRelease(function, Kind::kLibraryBlock, epki)) return;
  std::free(epki);
  if (bytes == nullptr) return;
  if (!recorder().owned.give(Kind::kBlock, bytes)) {
    return fail(function, "finds bytes that malloc did not give");
  }
  std::free(bytes);
}

}  // namespace

void ZELKM_InitDNItem(ZELKMDNItem** dn) { clear(__func__, dn); }

void ZELKM_InitEPKIItem(ZELKMEPKIItem** epki) { clear(__func__, epki); }

void ZELKM_FreeDNItem(ZELKMDNItem* dn) {
  const HostCode host;
  if (!recordRelease(__func__, Kind::kBlock, dn)) return;
  for (char* text : {dn->cn, dn->ou, dn->o, dn->l, dn->s, dn->pc, dn->c}) {
    releaseText(__func__, text);
  }
  std::free(dn);
}

void ZELKM_FreeKeyItem(ZELKMKeyItem* item) { releaseHandedOut(__func__, item); }

void ZELKM_FreeKeyItemList(ZELKMKeyItemList* list) { releaseHandedOut(__func__, list); }

void ZELKM_FreeCertItemList(ZELKMCertItemList* list) { releaseHandedOut(__func__, list); }

void ZELKM_FreeLabelList(ZELKMLabelList* list) {
  if (recorder().owned.holds(Kind::kBlock, list)) return releaseOwnLabelList(__func__, list);
  releaseHandedOut(__func__, list);
}

void ZELKM_FreeReqKeyItem(ZELKMReqKeyItem* item) { releaseHandedOut(__func__, item); }

void ZELKM_FreeEPKIItem(ZELKMEPKIItem* epki) {
  if (recorder().owned.holds(Kind::kLibraryBlock, epki)) return releaseOwnEpki(__func__, epki);
  releaseHandedOut(__func__, epki);
}

void ZELKM_FreePrivKeyInfoItem(ZELKMPrivKeyInfoItem* privKeyInfo) {
  releaseHandedOut(__func__, privKeyInfo);
}
