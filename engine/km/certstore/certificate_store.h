#ifndef ZEL_KM_CERTSTORE_CERTIFICATE_STORE_H_
#define ZEL_KM_CERTSTORE_CERTIFICATE_STORE_H_

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "engine/km/certstore/changes.h"
#include "engine/km/certstore/inventory.h"
#include "engine/km/store/pkcs8_store.h"
#include "engine/sys/password.h"

/**
 * @file
 * A certificate store of the user as a store. docs/certificate-store.md tells what lies where.
 *
 * It has no password, no requests and no default key. What is trusted is told by the store that a
 * certificate lies in, so marks of trust on new entries are let pass, and setting another one is
 * ZELKM_ERR_UNSUPPORTED_OPTION (80). Issuers are looked for in the stores of authorities too.
 */

namespace zel::km::certstore {

class CertificateStore final : public Pkcs8Store {
 public:
  /**
   * Opens a store.
   *
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_LABEL_NOT_EXIST (137): there is no such store.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED (139): there is no password to give.
   *  - ZELKM_ERR_FILE_OPEN_NOT_ALLOWED (90): its folder is not the user's alone.
   */
  static sys::Result<std::unique_ptr<Store>> open(std::string_view name,
                                                  const sys::Password& password);

  sys::Result<std::vector<Label>> keyLabels() override;
  sys::Result<std::vector<Label>> requestLabels() override;
  sys::Result<KeyEntry> findKey(const Label& label) override;
  sys::Result<RequestEntry> findRequest(const Label& label) override;
  sys::Result<KeyEntry> defaultKey() override;
  sys::Result<std::vector<KeyEntry>> findKeysByPublicKey(sys::ByteView publicKey) override;
  sys::Result<std::vector<RequestEntry>> findRequestsByPublicKey(sys::ByteView publicKey) override;
  sys::Result<std::vector<KeyEntry>> findKeysBySubject(sys::ByteView subject) override;

  /** ZELKM_ERR_DATABASE_DUPLICATE_KEY (21) when the certificate is there under another label. */
  sys::Status insertKey(const KeyEntry& entry) override;
  sys::Status insertRequest(const RequestEntry& entry) override;
  sys::Status replaceKey(const KeyEntry& entry) override;
  sys::Status replaceRequest(const RequestEntry& entry) override;
  sys::Status removeKey(const Label& label) override;
  sys::Status removeRequest(const Label& label) override;
  sys::Status setDefault(const Label& label) override;
  sys::Status setTrusted(const Label& label, bool trusted) override;
  sys::Status runChanges(const Run& run) override;

  bool approvedOnly() const override;
  /** Under the empty password. */
  sys::Result<sys::Bytes> encryptedPrivateKey(const PrivateKey& key) override;
  sys::Result<sys::SecretBytes> decryptedPrivateKey(sys::ByteView encrypted) override;

 private:
  CertificateStore(StoreFolder folder, std::vector<StoreFolder> authorities);

  sys::Status refresh() { return inventory_.refresh(changes_.doomed()); }
  /** The entry that has the label now. */
  sys::Result<StoredEntry> lookUp(const Label& label);
  /** As lookUp, of an entry whose file can be changed without changing another. */
  sys::Result<StoredEntry> lookUpAlone(const Label& label);
  /** Refuses a certificate that an entry has already. */
  sys::Status requireNew(const sys::Bytes& certificate) const;

  Inventory inventory_;
  std::vector<Inventory> authorities_; /**< the other stores that issuers are looked for in */
  Changes changes_;
};

}  // namespace zel::km::certstore

#endif  // ZEL_KM_CERTSTORE_CERTIFICATE_STORE_H_
