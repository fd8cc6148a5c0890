#include "bridge/kmlib/zelkm.h"

// The operations that are not built yet. docs/engine.md lists them too.

static constexpr int kNotBuilt = ZELKM_ERR_UNSUPPORTED_OPTION;

int ZELKM_Kyr2Kdb(const char*, const char*, const char*, const char*) { return kNotBuilt; }

int ZELKM_Kdb2Kyr(const char*, const char*, const char*, const char*) { return kNotBuilt; }
