// The library's allocator is the C library's: whoever receives a block may release it with either.

#include <cstdlib>
#include <cstring>

#include "bridge/kmlib/zelkm.h"

void* ZELKM_Malloc(size_t size) { return std::malloc(size); }

void* ZELKM_Realloc(void* block, size_t size) { return std::realloc(block, size); }

void ZELKM_Free(void* block) { std::free(block); }

char* ZELKM_Strdup(const char* text) { return text == nullptr ? nullptr : strdup(text); }
