#ifndef BRIDGE_FRAME_STATED_LEAKS_H_
#define BRIDGE_FRAME_STATED_LEAKS_H_

#include <cstdio>

/**
 * @file
 * What the bridge leaves behind on purpose. Java programs have been written against the paths on
 * which a buffer or a handle stays behind, so those paths are kept, but in plain sight:
 *
 *     ZELKM_ValidateCertChain(handle, certificate, length, &isValid);
 *     leaveOpen(handle);
 *
 * An output that came with an error is no leak of the bridge: by its conventions the library writes
 * none (zelkm_operations.h), and what one hands out all the same stays its own.
 *
 * The functions do nothing. They name the place, so that a search finds every one of them, and a
 * check counts them against tests/checks/permitted_leaks. Strings have HeldStrings::leaveHeld.
 */

namespace zel::bridge {

/** leaveAllocated marks a buffer that the bridge never frees. */
inline void leaveAllocated(const void* /*buffer*/) {}

/** leaveOpen marks a key database handle that nobody closes. */
inline void leaveOpen(int /*handle*/) {}

/** leaveStreamOpen marks a file stream that nobody closes. */
inline void leaveStreamOpen(const std::FILE* /*stream*/) {}

/** leavePinned marks array elements that are not handed back to the virtual machine. */
inline void leavePinned(const void* /*elements*/) {}

}  // namespace zel::bridge

#endif  // BRIDGE_FRAME_STATED_LEAKS_H_
