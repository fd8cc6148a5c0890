#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "tests/recording_double/library_call.h"

using namespace zel::test;

int ZELKM_Init() { return OperationCall(__func__).answer(); }

int ZELKM_CleanAll() { return OperationCall(__func__).answer(); }

int ZELKM_StartTrace(const char* componentTag, const char* traceFileName, int64_t firstSetting,
                     int64_t secondSetting) {
  return OperationCall(__func__, quoted(componentTag), quoted(traceFileName), firstSetting,
                       secondSetting)
      .answer();
}

int ZELKM_SetCryptoInfo(ZELKMCryptoInfo* info) {
  if (info == nullptr) return OperationCall(__func__, std::string("null")).answer();
  OperationCall call(__func__, recorder().owned.nameOf(info) + " " + inHex(info, 2) + "..");
  if (recorder().owned.give(Kind::kLibraryBlock, info)) {
    library().kept.push_back(info);
  } else {
    call.wrong("is given a block that cannot be kept");
  }
  return call.answer();
}

uint32_t ZELKM_GetMaxCryptoKeySize(uint32_t selector) {
  LibraryCall(__func__, selector).returns(std::to_string(library().maxCryptoKeySize));
  return library().maxCryptoKeySize;
}

void* ZELKM_Malloc(size_t size) {
  LibraryCall call(__func__, size);
  void* block = cannotAllocate(__func__) ? nullptr : std::malloc(size);
  if (block == nullptr) {
    call.returns("null");
    return nullptr;
  }
  std::memset(block, 0xA5, size);
  call.returns(recorder().owned.take(Kind::kLibraryBlock, block, std::free));
  return block;
}

/** Always moves the block, as realloc may: who keeps the old address is found out. */
void* ZELKM_Realloc(void* block, size_t size) {
  LibraryCall call(__func__, recorder().owned.nameOf(block), size);
  if (!recorder().owned.holds(Kind::kLibraryBlock, block)) {
    call.wrong("is given what ZELKM_Malloc did not give");
    return nullptr;
  }
  void* resized = cannotAllocate(__func__) ? nullptr : std::malloc(size);
  if (resized == nullptr) {
    call.returns("null");
    return nullptr;
  }
  std::memcpy(resized, block, std::min(size, malloc_usable_size(block)));
  recorder().owned.give(Kind::kLibraryBlock, block);
  std::free(block);
  call.returns(recorder().owned.take(Kind::kLibraryBlock, resized, std::free));
  return resized;
}

void ZELKM_Free(void* block) {
  const HostCode host;
  const Ownership& owned = recorder().owned;
  const bool handedOut = owned.holds(Kind::kBuffer, block);
  const Kind kind = handedOut                         ? Kind::kBuffer
                    : owned.holds(Kind::kText, block) ? Kind::kText
                                                      : Kind::kLibraryBlock;
  if (recordRelease(__func__, kind, block)) std::free(block);
}

char* ZELKM_Strdup(const char* text) {
  LibraryCall call(__func__, quoted(text));
  if (text == nullptr || cannotAllocate(__func__)) {
    call.returns("null");
    return nullptr;
  }
  call.done();
  char* copy = strdup(text);
  recorder().owned.takeAs(Kind::kText, copy, "text " + quoted(text), std::free);
  return copy;
}
