#ifndef ZEL_KM_WORK_PFX_H_
#define ZEL_KM_WORK_PFX_H_

#include <vector>

#include "engine/km/store/store.h"
#include "engine/sys/file_name.h"
#include "engine/sys/password.h"
#include "engine/sys/result.h"

/**
 * @file
 * Entries of a store into PKCS #12 (PFX) files, and out of those of any program.
 */

namespace zel::km {

/**
 * exportPfx writes the entries, each with its issuers, to a file for its owner alone. A label that
 * stands twice counts once.
 *
 *  - ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL (111): a key that does not leave its store.
 *  - the codes of Store::findKey, cms::writePkcs12 and writeOutput.
 */
sys::Status exportPfx(Store& store, const std::vector<Label>& labels, const sys::FileName& file,
                      const sys::Password& password);

/**
 * importPfx inserts all entries of a file, or none, under labels made of their names. A certificate
 * alone that the store has already is not taken twice; a key always is taken. The codes of
 * cms::readPkcs12.
 */
sys::Status importPfx(Store& store, const sys::FileName& file, const sys::Password& password);

}  // namespace zel::km

#endif  // ZEL_KM_WORK_PFX_H_
