#include "bridge/frame/load.h"

#include <cstdlib>

#include "bridge/frame/trace.h"

namespace zel::bridge {

std::int32_t libraryLoaded = 0;

void staticFini() { traceMessage("JNI_DEBUG......staticFini: DLL_PROCESS_DETACH\n"); }

[[gnu::constructor]] void staticInit() {
  libraryLoaded = 1;
  debugMsgEnv = std::getenv("VOSMAR_JNI_DEBUG");
  traceMessage("JNI_DEBUG......debugMsgEnvExist=%s\n", orNull(debugMsgEnv));
  traceMessage("JNI_DEBUG......staticInit: DLL_PROCESS_ATTACH\n");
  // A full exit table only costs the farewell line.
  static_cast<void>(std::atexit(staticFini));
}

}  // namespace zel::bridge
