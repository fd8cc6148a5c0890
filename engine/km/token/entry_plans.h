#ifndef ZEL_KM_TOKEN_ENTRY_PLANS_H_
#define ZEL_KM_TOKEN_ENTRY_PLANS_H_

#include "engine/km/store/store.h"
#include "engine/km/token/plan.h"
#include "engine/km/token/token_view.h"
#include "engine/sys/result.h"

/**
 * @file
 * How entries are written as the objects that they are made of: what is to be done to a token that
 * looks like the view, for each change of a Store.
 *
 *     Result<Plan> plan = planInsertKey(view, entry);
 *     if (!plan) return plan.failure();
 *     return transaction.apply(std::move(plan).value());
 *
 * A key and its certificate get the same CKA_ID and label; what other tools have set is kept. A key
 * that no entry needs any more goes with its last one.
 */

namespace zel::km::token {

// The codes are those of Store.

/** Writes the entry's certificate, and its key when the token does not have it. */
sys::Result<Plan> planInsertKey(const TokenView& view, const KeyEntry& entry);
/** A certificate that is the same stays where it is, because some tokens have it once only. */
sys::Result<Plan> planReplaceKey(const TokenView& view, const KeyEntry& entry);
sys::Result<Plan> planRemoveKey(const TokenView& view, const Label& label);
/** A trusted certificate is marked as an authority's. */
sys::Result<Plan> planSetTrusted(const TokenView& view, const Label& label, bool trusted);

/**
 * Writes the entry's request, and its key when the token does not have it. On a token that takes
 * no data objects only the key remembers what was requested: its subject, not its extensions.
 */
sys::Result<Plan> planInsertRequest(const TokenView& view, const RequestEntry& entry);
sys::Result<Plan> planReplaceRequest(const TokenView& view, const RequestEntry& entry);
sys::Result<Plan> planRemoveRequest(const TokenView& view, const Label& label);

/** ZELKM_ERR_KEY_GET_BY_LABEL (117), for a label that the token does not have. */
sys::Failure noSuchLabel(const Label& label);

}  // namespace zel::km::token

#endif  // ZEL_KM_TOKEN_ENTRY_PLANS_H_
