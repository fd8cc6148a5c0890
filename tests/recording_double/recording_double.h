#ifndef TESTS_RECORDING_DOUBLE_RECORDING_DOUBLE_H_
#define TESTS_RECORDING_DOUBLE_RECORDING_DOUBLE_H_

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>

#include "bridge/kmlib/zelkm.h"
#include "tests/recording_double/records.h"

/**
 * @file
 * A double of the key management library. Every operation records its name, its arguments, its
 * answer and its outputs; a test says what it answers:
 *
 *     library().answers["ZELKM_OpenKeyDb"] = ZELKM_ERR_DATABASE_INVALID_PASSWORD;
 *     library().keyItem = [] { return newKeyItem("my key"); };
 *     recorder().faults.failCall("ZELKM_CloseKeyDb", 1);
 *     // ZELKM_OpenKeyDb("a.kdb", "secret") = 0, handle 1
 *     // ZELKM_GetKeyItemByLabel(1, "my key") = 0, key item#1
 *
 * It keeps the promises of zelkm_operations.h and records an error when the caller breaks one: an
 * output that was not cleared, a handle that is not open, a record released twice, or by another
 * operation than the one named for it, a locator that is not zero outside its fields.
 */

namespace zel::test {

template <typename Record>
using Maker = std::function<Record*()>;

struct RecordingDouble {
  /** The code of an operation that fails because the fault plan says so. */
  static constexpr int kFailure = ZELKM_ERR_UNKNOWN;

  ~RecordingDouble();

  /** The code an operation answers, by its name; 0 when it is not named. */
  std::map<std::string, int> answers;

  /** Outputs are written on failures too, as a library of another make might do. */
  bool outputsDespiteErrors = false;

  /** Buffers are handed out as null, with the length that they should have. */
  bool losesBuffers = false;

  /** Opening succeeds with the handle 0. */
  bool opensWithoutHandle = false;

  /** What operations hand out; none hands out null. */
  Maker<ZELKMLabelList> keyLabels;
  Maker<ZELKMLabelList> requestLabels;
  Maker<ZELKMLabelList> tokenLabels;
  Maker<ZELKMKeyItem> keyItem;
  Maker<ZELKMKeyItemList> keyItemList;
  Maker<ZELKMReqKeyItem> reqKeyItem;
  Maker<ZELKMCertItemList> certList;
  Maker<ZELKMEPKIItem> epki;
  Maker<ZELKMPrivKeyInfoItem> privKeyInfo;

  /** The to-be-signed part of every certificate, and the contents of every Base64 file. */
  Bytes unsignedCert = {0x30, 0x7b};
  Bytes decodedFile = {0x30, 0xdf};

  /** The byte that the operations with a flag as output set, after the bytes of nextFlags. */
  unsigned char flag = 1;
  std::deque<unsigned char> nextFlags;

  uint32_t maxCryptoKeySize = 16384;

  int lastHandle = 0;
  /** Blocks that ZELKM_SetCryptoInfo keeps. */
  std::vector<void*> kept;
};

RecordingDouble& library();

/** resetLibrary() makes a new double of it, for the next test. */
void resetLibrary();

}  // namespace zel::test

#endif  // TESTS_RECORDING_DOUBLE_RECORDING_DOUBLE_H_
