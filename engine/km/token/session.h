#ifndef ZEL_KM_TOKEN_SESSION_H_
#define ZEL_KM_TOKEN_SESSION_H_

#include <p11-kit/pkcs11.h>

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "engine/km/token/attributes.h"
#include "engine/km/token/module.h"
#include "engine/km/token/slots.h"
#include "engine/sys/password.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * A session with a token, and what can be done with objects in it:
 *
 *     Result<std::unique_ptr<Session>> session = Session::open(module, token, password);
 *     if (!session) return session.failure();
 *     Result<std::vector<CK_OBJECT_HANDLE>> found = session.value()->find(wanted);
 *
 * A token that is pulled out makes every call fail with ZELKM_ERR_NO_TOKEN_PRESENT (151).
 */

namespace zel::km::token {

/** KeyPairHandles are the two objects of a key pair. */
struct KeyPairHandles {
  CK_OBJECT_HANDLE publicKey = CK_INVALID_HANDLE;
  CK_OBJECT_HANDLE privateKey = CK_INVALID_HANDLE;
};

class Session {
 public:
  /**
   * Opens a session and logs in, where the token wants that.
   *
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_REQUIRED (138): the token wants a PIN.
   *  - ZELKM_ERR_CRYPTOGRAPHIC_TOKEN_PASSWORD_NOT_REQUIRED (139): a PIN for a token that takes
   *    none.
   *  - the codes of Module::openSession.
   */
  static sys::Result<std::unique_ptr<Session>> open(std::shared_ptr<Module> module, Token token,
                                                    const sys::Password& pin);

  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  const Token& token() const { return token_; }

  /** Keeps all others off the token's module over several calls. */
  CallTurn takeTurn() const { return module_->takeTurn(); }

  /** Changes the token's PIN; the code of a new PIN that the token does not take is 130 or 69. */
  sys::Status changePin(const sys::Password& newPin);

  /** The objects that have all attributes of the template. */
  sys::Result<std::vector<CK_OBJECT_HANDLE>> find(const Template& wanted) const;
  sys::Result<Attributes> read(CK_OBJECT_HANDLE object,
                               std::span<const CK_ATTRIBUTE_TYPE> types) const;
  // These two answer in the module's own words, because some refusals are worth another try.
  CK_RV create(const Template& attributes, CK_OBJECT_HANDLE* object) const;
  CK_RV change(CK_OBJECT_HANDLE object, const Template& attributes) const;
  sys::Status destroy(CK_OBJECT_HANDLE object) const;
  /** As destroy, and even when the turn does not come: for what was made for nothing. */
  sys::Status destroyAnyway(CK_OBJECT_HANDLE object) const;

  /** True when the token offers the mechanism for a key of that size in bits. */
  sys::Result<bool> offers(CK_MECHANISM_TYPE mechanism, int keySize) const;
  sys::Result<KeyPairHandles> generateKeyPair(CK_MECHANISM_TYPE mechanism,
                                              const Template& publicKey,
                                              const Template& privateKey) const;
  /** Signs; the PIN is given once more where the key asks for it at every use. */
  sys::Result<sys::Bytes> sign(CK_MECHANISM_TYPE mechanism, CK_OBJECT_HANDLE privateKey,
                               sys::ByteView data) const;

  /** The PIN that the session was opened with. */
  sys::ByteView pin() const { return pin_.bytes(); }

 private:
  Session(std::shared_ptr<Module> module, Token token, sys::SecretBlock pin);

  sys::Status openHandle();

  std::shared_ptr<Module> module_;
  Token token_;
  sys::SecretBlock pin_;
  CK_SESSION_HANDLE handle_ = CK_INVALID_HANDLE;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_SESSION_H_
