#ifndef ZELKM_H_
#define ZELKM_H_

/**
 * @file
 * The C interface of the key management library: all that a bridge, an engine or a test double has
 * to know of each other. Include this header and no other of this folder.
 *
 * It compiles as C11 and as C++20 and depends on nothing but the C standard library. The interface
 * is for 64-bit x86 (LP64, little endian); the records' headers assert their layout.
 */

#include "zelkm_codes.h"
#include "zelkm_locator.h"
#include "zelkm_operations.h"
#include "zelkm_records.h"

#endif  // ZELKM_H_
