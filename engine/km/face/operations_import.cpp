#include <vector>

#include "bridge/kmlib/zelkm.h"
#include "engine/cms/pkcs12/pkcs12.h"
#include "engine/km/face/operation.h"
#include "engine/km/store/new_labels.h"
#include "engine/km/work/issuer_entries.h"
#include "engine/sys/file_name.h"
#include "engine/sys/files.h"
#include "engine/sys/password.h"

// PKCS #12 files into a store.

using namespace zel;
using namespace zel::km;

namespace {

constexpr std::size_t kMostPfxBytes = 256UL << 20;

/** A certificate alone that the store has already is not taken twice; a key always is taken. */
sys::Status addEntry(Store& store, cms::Pkcs12Entry& entry) {
  const sys::Bytes& certificate = entry.chain.front();
  if (entry.privateKeyInfo.empty()) {
    const sys::Result<bool> isThere = hasCertificate(store, certificate);
    if (!isThere) return isThere.failure();
    if (isThere.value()) return sys::success();
  }
  const sys::Result<Label> wanted = wantedLabel(entry.friendlyName, certificate);
  if (!wanted) return wanted.failure();
  const sys::Result<Label> label = freeKeyLabel(store, wanted.value());
  if (!label) return label.failure();

  KeyEntry added;
  added.label = label.value();
  added.certificate = certificate;
  added.privateKey.pkcs8 = std::move(entry.privateKeyInfo);
  added.trusted = entry.trusted;
  return store.insertKey(added);
}

}  // namespace

int ZELKM_ImportKeysFromPFXFile(int handle, const char* pfxFileName, const char* pfxPassword) {
  return onStore(__func__, handle, [&](Store& store) -> sys::Status {
    const sys::Result<sys::FileName> fileName = sys::FileName::given(pfxFileName);
    if (!fileName) return fileName.failure();
    const sys::Result<sys::Password> password = sys::Password::givenOrEmpty(pfxPassword);
    if (!password) return password.failure();
    const sys::Result<sys::SecretBytes> file =
        sys::readSecretFile(fileName.value().path(), kMostPfxBytes);
    if (!file) return file.failure();
    sys::Result<std::vector<cms::Pkcs12Entry>> entries =
        cms::readPkcs12(file.value(), password.value().bytes());
    if (!entries) return entries.failure();
    return store.inTransaction([&]() -> sys::Status {
      for (cms::Pkcs12Entry& entry : entries.value()) {
        if (sys::Status done = addEntry(store, entry); !done) return done;
      }
      return sys::success();
    });
  });
}
