#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

namespace {

/** What a process with the bridge in it writes to standard error, from its start to its end. */
std::string standardErrorOf(const std::string& environment) {
  const std::string command = "env -u VOSMAR_JNI_DEBUG " + environment + " " LOAD_PROBE " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  std::string output;
  std::array<char, 256> chunk{};
  while (std::fgets(chunk.data(), chunk.size(), pipe) != nullptr) output += chunk.data();
  EXPECT_EQ(pclose(pipe), 0) << output;
  return output;
}

TEST(Load, IsTracedWithTheVariablesValueAndSoIsUnload) {
  EXPECT_EQ(standardErrorOf("VOSMAR_JNI_DEBUG=yes"),
            "JNI_DEBUG......debugMsgEnvExist=yes\n"
            "JNI_DEBUG......staticInit: DLL_PROCESS_ATTACH\n"
            "JNI_DEBUG......staticFini: DLL_PROCESS_DETACH\n");
}

TEST(Load, IsTracedWithAnEmptyVariable) {
  EXPECT_EQ(standardErrorOf("VOSMAR_JNI_DEBUG="),
            "JNI_DEBUG......debugMsgEnvExist=\n"
            "JNI_DEBUG......staticInit: DLL_PROCESS_ATTACH\n"
            "JNI_DEBUG......staticFini: DLL_PROCESS_DETACH\n");
}

TEST(Load, IsSilentWithoutTheVariable) { EXPECT_EQ(standardErrorOf(""), ""); }

}  // namespace
