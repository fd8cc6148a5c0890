#ifndef ZEL_KM_TOKEN_PLAN_H_
#define ZEL_KM_TOKEN_PLAN_H_

#include <variant>
#include <vector>

#include "engine/km/token/attributes.h"
#include "engine/km/token/token_objects.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/bytes.h"

/**
 * @file
 * What is to be done to a token, step by step. A Plan is made on a view of the token by
 * entry_plans.h, and carried out on the token itself by transaction.h:
 *
 *     Plan plan;
 *     plan.push_back({RemoveObject{old}});
 *     transaction.apply(plan);
 */

namespace zel::km::token {

/**
 * Makes an object from a template. Here the object has a handle of the plan's own, by which later
 * steps refer to it; on the token it gets another.
 */
struct CreateObject {
  Template attributes;
  TokenObject object;
};

struct SetAttribute {
  CK_OBJECT_HANDLE object;
  CK_ATTRIBUTE_TYPE type;
  sys::Bytes value;
};

/** Takes an object for gone; it is destroyed when all else has succeeded. */
struct RemoveObject {
  CK_OBJECT_HANDLE object;
};

/** Keeps a key pair that was removed within the same transaction. */
struct RestoreKey {
  CK_OBJECT_HANDLE privateKey;
};

/** Makes a new key one that an entry has come for. */
struct UseNewKey {
  CK_OBJECT_HANDLE privateKey;
};

using Action = std::variant<CreateObject, SetAttribute, RemoveObject, RestoreKey, UseNewKey>;

/** What a token may refuse without the plan failing for it. */
enum class Refusal {
  none,
  attributeType, /**< one that the token does not know */
  objectKind,    /**< objects like this one at all */
  any
};

struct Step {
  Action action;
  Refusal tolerated = Refusal::none;
  std::vector<Step> instead = {}; /**< what is done when the token refuses so */
};

using Plan = std::vector<Step>;

/** Makes a view follow an action that was carried out. */
void follow(TokenView& view, const Action& action);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_PLAN_H_
