#ifndef BRIDGE_FRAME_LIBRARY_PATH_H_
#define BRIDGE_FRAME_LIBRARY_PATH_H_

namespace zel::bridge {

/**
 * getLibraryPath answers the resolved path of the file this code was loaded from, empty when it
 * cannot be resolved, null when memory is out. The caller frees it with free.
 */
char* getLibraryPath();

}  // namespace zel::bridge

#endif  // BRIDGE_FRAME_LIBRARY_PATH_H_
