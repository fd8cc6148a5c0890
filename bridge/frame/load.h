#ifndef BRIDGE_FRAME_LOAD_H_
#define BRIDGE_FRAME_LOAD_H_

#include <cstdint>

namespace zel::bridge {

/** libraryLoaded is 1 once staticInit has run. */
extern std::int32_t libraryLoaded;

/**
 * staticInit runs when the library is loaded: it reads the environment once, so later changes of
 * VOSMAR_JNI_DEBUG have no effect, and registers staticFini for the unloading.
 */
void staticInit();

/** staticFini runs when the library is unloaded, and only says so. */
void staticFini();

}  // namespace zel::bridge

#endif  // BRIDGE_FRAME_LOAD_H_
