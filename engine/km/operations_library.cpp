#include "bridge/kmlib/zelkm.h"

uint32_t ZELKM_GetMaxCryptoKeySize(uint32_t selector) { return selector == 1 ? 16384 : 0; }
