#include "tests/recorder/watched_libc.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/recorder/readable.h"
#include "tests/recorder/recorder.h"
#include "tests/recorder/streams.h"

namespace zel::test {

WatchedLibc& watchedLibc() {
  static WatchedLibc instance;
  return instance;
}

void WatchedLibc::addFile(const std::string& name, std::vector<unsigned char> contents) {
  files.emplace_back(name, std::move(contents));
}

namespace {

void recordAllocation(const std::string& call, const void* block, size_t size) {
  if (block == nullptr) {
    recorder().event(call + " = null");
    return;
  }
  recorder().event(call + " = " + recorder().owned.take(Kind::kBlock, block, std::free));
  recorder().owned.setSize(block, size);
}

/** Secrets are wiped before they are freed; a block full of zeros shows it. */
bool recordFree(const void* block) {
  Ownership& owned = recorder().owned;
  const std::string name = owned.nameOf(block);
  const char* wiped = owned.isWiped(name) ? " wiped" : "";
  recorder().event("free(" + (name.empty() ? "unknown block" : name) + wiped + ")");
  if (owned.give(Kind::kBlock, block) || owned.give(Kind::kBuffer, block)) return true;
  recorder().error("free of what malloc did not give, or twice");
  return false;
}

FILE* openInMemory(const char* name, const std::string& mode) {
  WatchedLibc& libc = watchedLibc();
  if (libc.noFiles || name == nullptr) return nullptr;
  if (mode.find('w') != std::string::npos) return recordedStream(name);
  for (const auto& [fileName, contents] : libc.files) {
    if (fileName == name) return readableStream(contents);
  }
  return nullptr;
}

}  // namespace

}  // namespace zel::test

using zel::test::bridgeIsRunning;
using zel::test::FaultPlan;
using zel::test::HostCode;
using zel::test::Kind;
using zel::test::openInMemory;
using zel::test::quoted;
using zel::test::recordAllocation;
using zel::test::recorder;
using zel::test::recordFree;
using zel::test::watchedLibc;

extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
FILE* __real_fopen(const char* name, const char* mode);
size_t __real_fread(void* out, size_t size, size_t count, FILE* file);
int __real_fclose(FILE* file);
time_t __real_time(time_t* out);
int __real_dladdr(const void* address, Dl_info* info);

void* __wrap_malloc(size_t size) {
  if (!bridgeIsRunning()) return __real_malloc(size);
  const HostCode host;
  const bool fails = recorder().faults.fails(FaultPlan::kAllocation, "malloc");
  void* block = fails ? nullptr : __real_malloc(size);
  if (block != nullptr) std::memset(block, 0xA5, size);
  recordAllocation("malloc(" + std::to_string(size) + ")", block, size);
  return block;
}

void* __wrap_calloc(size_t count, size_t size) {
  if (!bridgeIsRunning()) return __real_calloc(count, size);
  const HostCode host;
  const bool fails = recorder().faults.fails(FaultPlan::kAllocation, "calloc");
  void* block = fails ? nullptr : __real_calloc(count, size);
  recordAllocation("calloc(" + std::to_string(count) + ", " + std::to_string(size) + ")", block,
                   count * size);
  return block;
}

void* __wrap_realloc(void* block, size_t size) {
  if (!bridgeIsRunning()) return __real_realloc(block, size);
  const HostCode host;
  recorder().error("realloc is not called by this bridge");
  return __real_realloc(block, size);
}

void __wrap_free(void* block) {
  // To free nothing is to do nothing, so it is no event.
  if (!bridgeIsRunning() || block == nullptr) return __real_free(block);
  const HostCode host;
  if (recordFree(block)) __real_free(block);
}

FILE* __wrap_fopen(const char* name, const char* mode) {
  if (!bridgeIsRunning()) return __real_fopen(name, mode);
  const HostCode host;
  FILE* file = openInMemory(name, mode);
  const std::string call = "fopen(" + quoted(name) + ", " + quoted(mode) + ")";
  if (file != nullptr) {
    recorder().owned.takeAs(Kind::kFile, file, "file " + quoted(name),
                            [](void* open) { std::fclose(static_cast<FILE*>(open)); });
  }
  recorder().event(call + (file == nullptr ? " = null" : ""));
  return file;
}

size_t __wrap_fread(void* out, size_t size, size_t count, FILE* file) {
  if (!bridgeIsRunning()) return __real_fread(out, size, count, file);
  const HostCode host;
  const bool fails = recorder().faults.fails(FaultPlan::kReading, "fread");
  const size_t read = fails ? 0 : __real_fread(out, size, count, file);
  recorder().event("fread(" + std::to_string(size) + ", " + std::to_string(count) +
                   ") = " + std::to_string(read) + (fails ? ", error" : ""));
  return read;
}

int __wrap_fclose(FILE* file) {
  if (!bridgeIsRunning()) return __real_fclose(file);
  const HostCode host;
  recorder().event("fclose(" + recorder().owned.nameOf(file) + ")");
  if (!recorder().owned.give(Kind::kFile, file)) {
    recorder().error("fclose of what is not open");
    return EOF;
  }
  return __real_fclose(file);
}

time_t __wrap_time(time_t* out) {
  if (!bridgeIsRunning()) return __real_time(out);
  if (out != nullptr) *out = watchedLibc().now;
  return watchedLibc().now;
}

int __wrap_dladdr(const void* address, Dl_info* info) {
  if (bridgeIsRunning() && !watchedLibc().loadedFromFile) return 0;
  return __real_dladdr(address, info);
}

}  // extern "C"
