#include "bridge/kmlib/zelkm.h"

/* A C caller's view of the records, read by the C++ half of the test. */
size_t sizeOfCertItemInC(void);
int lastErrorCodeInC(void);

size_t sizeOfCertItemInC(void) { return sizeof(ZELKMCertItem); }
int lastErrorCodeInC(void) { return ZELKM_ERR_NO_TOKEN_PRESENT; }
