#ifndef ZEL_KM_TOKEN_ATTRIBUTES_H_
#define ZEL_KM_TOKEN_ATTRIBUTES_H_

#include <p11-kit/pkcs11.h>

#include <deque>
#include <map>
#include <string_view>
#include <vector>

#include "engine/sys/bytes.h"

/**
 * @file
 * The attributes of PKCS #11 objects: templates to make or find objects by, and the values that
 * were read.
 *
 *     Template wanted;
 *     wanted.addNumber(CKA_CLASS, CKO_CERTIFICATE).addFlag(CKA_TOKEN, true);
 *     Result<std::vector<CK_OBJECT_HANDLE>> found = session.find(wanted);
 */

namespace zel::km::token {

/** A Template owns the values of its attributes, and wipes them: private keys are among them. */
class Template {
 public:
  Template() = default;
  Template(const Template&) = delete;
  Template& operator=(const Template&) = delete;
  Template(Template&&) = default;
  Template& operator=(Template&&) = default;

  Template& addBytes(CK_ATTRIBUTE_TYPE type, sys::ByteView value);
  Template& addText(CK_ATTRIBUTE_TYPE type, std::string_view value);
  Template& addNumber(CK_ATTRIBUTE_TYPE type, CK_ULONG value);
  Template& addFlag(CK_ATTRIBUTE_TYPE type, bool value);

  /** As the functions of PKCS #11 take it; valid while the template lives unchanged. */
  CK_ATTRIBUTE* data() const { return const_cast<CK_ATTRIBUTE*>(attributes_.data()); }
  CK_ULONG size() const { return attributes_.size(); }

 private:
  std::deque<sys::SecretBytes> values_; /**< a deque: growing does not move what is in it */
  std::vector<CK_ATTRIBUTE> attributes_;
};

/** Attributes are the values that an object has; one that it lacks, or keeps secret, is absent. */
class Attributes {
 public:
  void set(CK_ATTRIBUTE_TYPE type, sys::Bytes value) { values_[type] = std::move(value); }

  /** No bytes when absent. */
  sys::ByteView bytes(CK_ATTRIBUTE_TYPE type) const;
  std::string_view text(CK_ATTRIBUTE_TYPE type) const;
  /** The fallback when absent, or when the value has not the size of a number. */
  CK_ULONG number(CK_ATTRIBUTE_TYPE type, CK_ULONG fallback) const;
  /** False when absent. */
  bool flag(CK_ATTRIBUTE_TYPE type) const;

 private:
  std::map<CK_ATTRIBUTE_TYPE, sys::Bytes> values_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_ATTRIBUTES_H_
