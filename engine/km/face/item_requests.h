#ifndef ZEL_KM_FACE_ITEM_REQUESTS_H_
#define ZEL_KM_FACE_ITEM_REQUESTS_H_

#include "engine/km/face/item_ptr.h"
#include "engine/km/store/store.h"
#include "engine/sys/result.h"

namespace zel::km {

/** handOutRequest answers a pending request with its key as a record of the C interface. */
sys::Result<ReqKeyItemPtr> handOutRequest(PrivateKeys& store, const RequestEntry& entry);

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ITEM_REQUESTS_H_
