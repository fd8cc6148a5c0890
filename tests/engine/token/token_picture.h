#ifndef ZEL_TESTS_ENGINE_TOKEN_TOKEN_PICTURE_H_
#define ZEL_TESTS_ENGINE_TOKEN_TOKEN_PICTURE_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/km/token/plan.h"
#include "engine/km/token/token_objects.h"
#include "engine/km/token/token_view.h"
#include "tests/engine/cms/tools.h"

/**
 * @file
 * Tokens that are only described, and what is planned for them in words:
 *
 *     TokenPicture picture;
 *     picture.certificate(11, "web", web.certificate(), "id").keyPair(21, "web", web, "id");
 *     EXPECT_THAT(inWords(planRemoveKey(picture.view(), "web"_label)),
 *                 ElementsAre("remove 11", "remove 31", "remove 21"));
 *
 * Certificates have handles from 11 on, private keys from 21 on, their public keys ten more,
 * requests from 41 on.
 */

namespace zel::km::token {

inline sys::Bytes bytesOfText(std::string_view text) { return {text.begin(), text.end()}; }

inline sys::Bytes publicKeyOf(const cms::TestAuthority& owner) {
  return cms::publicKeyInfo(owner.key()).value();
}

class TokenPicture {
 public:
  TokenPicture& certificate(CK_OBJECT_HANDLE handle, const std::string& label,
                            const sys::Bytes& der, const std::string& id,
                            CK_ULONG category = kUnspecified) {
    CertificateObject object = certificateObject(der);
    object.handle = handle;
    object.label = label;
    object.id = bytesOfText(id);
    object.category = category;
    objects_.put(std::move(object));
    return *this;
  }

  TokenPicture& keyPair(CK_OBJECT_HANDLE handle, const std::string& label,
                        const cms::TestAuthority& owner, const std::string& id,
                        const std::string& subject = "subject") {
    objects_.put(PrivateKeyObject{.handle = handle,
                                  .type = CKK_EC,
                                  .label = label,
                                  .id = bytesOfText(id),
                                  .subject = bytesOfText(subject),
                                  .publicKey = {}});
    objects_.put(PublicKeyObject{.handle = handle + 10,
                                 .type = CKK_EC,
                                 .label = label,
                                 .id = bytesOfText(id),
                                 .publicKey = publicKeyOf(owner)});
    return *this;
  }

  TokenPicture& newKeyPair(CK_OBJECT_HANDLE handle, const cms::TestAuthority& owner) {
    newKeys_.insert(handle);
    return keyPair(handle, "", owner, "provisional " + std::to_string(handle), "");
  }

  TokenPicture& request(CK_OBJECT_HANDLE handle, const std::string& label,
                        const cms::TestAuthority& owner) {
    objects_.put(RequestObject{.handle = handle,
                               .label = label,
                               .der = bytesOfText("a request"),
                               .publicKey = publicKeyOf(owner)});
    return *this;
  }

  TokenView view() const { return {objects_, newKeys_}; }

 private:
  TokenObjects objects_;
  Handles newKeys_;
};

/** What is planned, a line for each step, or the code that is answered instead. */
std::vector<std::string> inWords(const sys::Result<Plan>& plan);

/** The view as it is when all of the plan has been done. */
TokenView after(TokenView view, const sys::Result<Plan>& plan);

}  // namespace zel::km::token

#endif  // ZEL_TESTS_ENGINE_TOKEN_TOKEN_PICTURE_H_
