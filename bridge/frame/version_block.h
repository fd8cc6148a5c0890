#ifndef BRIDGE_FRAME_VERSION_BLOCK_H_
#define BRIDGE_FRAME_VERSION_BLOCK_H_

/**
 * zelkjni_SCCSInfo tells which build this library is, in lines that the SCCS tool "what" finds. It
 * is exported and writable, so that a packager can stamp a built library.
 */
extern "C" __attribute__((visibility("default"))) char zelkjni_SCCSInfo[];

#endif  // BRIDGE_FRAME_VERSION_BLOCK_H_
