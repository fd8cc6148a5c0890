#ifndef ZEL_KM_TOKEN_CHANGES_H_
#define ZEL_KM_TOKEN_CHANGES_H_

#include <vector>

#include "engine/km/token/session.h"
#include "engine/km/token/token_objects.h"

/**
 * @file
 * Changes to a token that can be taken back. Tokens have no transactions, so what is made is kept
 * in mind, to be destroyed if need be, and what is destroyed goes last, when nothing can fail but
 * the destroying itself:
 *
 *     changes.begin();
 *     Result<CK_OBJECT_HANDLE> made = changes.create(attributes);
 *     changes.doom(old);
 *     return made ? changes.commit() : (changes.rollBack(), made.failure());
 */

namespace zel::km::token {

class Changes {
 public:
  explicit Changes(const Session& session) : session_(session) {}

  bool underWay() const { return underWay_; }
  void begin() { underWay_ = true; }
  /** Destroys what is doomed. */
  sys::Status commit();
  /** Undoes what was done, last change first. What cannot be undone is traced. */
  void rollBack();

  sys::Result<CK_OBJECT_HANDLE> create(const Template& attributes);
  /** As create, with the module's own answer, for callers that try. */
  CK_RV tryCreate(const Template& attributes, CK_OBJECT_HANDLE* object);
  /** Takes an object for made within these changes. */
  void adopt(CK_OBJECT_HANDLE object);
  sys::Status change(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type, sys::ByteView value);

  void doom(CK_OBJECT_HANDLE object) { doomed_.insert(object); }
  void spare(CK_OBJECT_HANDLE object) { doomed_.erase(object); }
  /** What is taken for gone already. */
  const Handles& doomed() const { return doomed_; }

 private:
  /** How to undo one change: destroy the object, or give an attribute its old value back. */
  struct Undo {
    CK_OBJECT_HANDLE object;
    bool wasMade;
    CK_ATTRIBUTE_TYPE type;
    sys::Bytes oldValue;
  };

  const Session& session_;
  bool underWay_ = false;
  std::vector<Undo> done_;
  Handles doomed_;
};

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_CHANGES_H_
