#ifndef ZEL_KM_FACE_ITEM_PTR_H_
#define ZEL_KM_FACE_ITEM_PTR_H_

#include <memory>

#include "bridge/kmlib/zelkm.h"

/**
 * @file
 * Owners of the C interface's records while they are being filled, so that nothing leaks when a
 * later field fails:
 *
 *     KeyItemPtr item(sys::handOutRecord<ZELKMKeyItem>());
 *     item->label = sys::handOutText(label);
 *     *out = item.release();
 */

namespace zel::km {

/** Releases one certificate record; over the C interface they only go with what holds them. */
void releaseCertItem(ZELKMCertItem* item);

template <auto release>
struct ItemReleaser {
  template <typename T>
  void operator()(T* item) const {
    release(item);
  }
};

using CertItemPtr = std::unique_ptr<ZELKMCertItem, ItemReleaser<releaseCertItem>>;
using CertItemListPtr = std::unique_ptr<ZELKMCertItemList, ItemReleaser<ZELKM_FreeCertItemList>>;
using DnItemPtr = std::unique_ptr<ZELKMDNItem, ItemReleaser<ZELKM_FreeDNItem>>;
using EpkiItemPtr = std::unique_ptr<ZELKMEPKIItem, ItemReleaser<ZELKM_FreeEPKIItem>>;
using KeyItemPtr = std::unique_ptr<ZELKMKeyItem, ItemReleaser<ZELKM_FreeKeyItem>>;
using KeyItemListPtr = std::unique_ptr<ZELKMKeyItemList, ItemReleaser<ZELKM_FreeKeyItemList>>;
using PrivKeyInfoItemPtr =
    std::unique_ptr<ZELKMPrivKeyInfoItem, ItemReleaser<ZELKM_FreePrivKeyInfoItem>>;
using ReqKeyItemPtr = std::unique_ptr<ZELKMReqKeyItem, ItemReleaser<ZELKM_FreeReqKeyItem>>;

}  // namespace zel::km

#endif  // ZEL_KM_FACE_ITEM_PTR_H_
