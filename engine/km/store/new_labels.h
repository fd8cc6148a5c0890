#ifndef ZEL_KM_STORE_NEW_LABELS_H_
#define ZEL_KM_STORE_NEW_LABELS_H_

#include <string>

#include "engine/km/store/key_entries.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Labels for certificates that come into a store without one of their own choice.
 */

namespace zel::km {

/**
 * A label for a certificate that has no name: its subject's common name, else its organizational
 * unit or organization, else "certificate".
 */
sys::Result<Label> labelForCertificate(sys::ByteView certificate);

/** The name of a certificate that nobody labelled, in real UTF-8: common name, else thumbprint. */
std::string nameOfUnlabelled(sys::ByteView certificate);

/** The label that a named certificate wants: its name (real UTF-8), else one made from its subject.
 */
sys::Result<Label> wantedLabel(const std::string& name, sys::ByteView certificate);

/** The label, numbered when a key of the store has it. */
sys::Result<Label> freeKeyLabel(KeyEntries& store, const Label& wanted);

}  // namespace zel::km

#endif  // ZEL_KM_STORE_NEW_LABELS_H_
