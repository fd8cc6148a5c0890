#include "bridge/keydb/export_labels.h"

#include <cstdlib>

#include "bridge/frame/stated_leaks.h"
#include "bridge/frame/trace.h"

namespace zel::bridge {

namespace {

ZELKMLabelList* newNode() {
  auto* node = static_cast<ZELKMLabelList*>(std::malloc(sizeof(ZELKMLabelList)));
  if (node != nullptr) *node = {nullptr, nullptr};
  return node;
}

char* copyOf(const char* text) { return text == nullptr ? nullptr : ZELKM_Strdup(text); }

/**
 * addLabel makes an empty node, writes the label into the current one and hangs the empty one
 * behind it, which it answers. So the second label takes the place of the first, whose copy is
 * lost. Where memory left no current node the list has a gap: those behind it are made all the
 * same, and reach nobody.
 */
ZELKMLabelList* addLabel(ZELKMLabelList* current, const char* label) {
  ZELKMLabelList* node = newNode();
  if (current == nullptr) {
    leaveAllocated(node);
    return node;
  }
  leaveAllocated(current->label);
  current->label = copyOf(label);
  traceMessage("JNI_DEBUG......exportLabel = %s\n", orNull(current->label));
  current->next = node;
  return node;
}

}  // namespace

ZELKMLabelList* newExportLabels(JNIEnv* env, jobjectArray labels) {
  const jsize count = env->GetArrayLength(labels);
  ZELKMLabelList* head = newNode();
  ZELKMLabelList* current = head;
  for (jsize i = 0; i < count; ++i) {
    auto element = static_cast<jstring>(env->GetObjectArrayElement(labels, i));
    const char* label = element == nullptr ? nullptr : env->GetStringUTFChars(element, nullptr);
    if (i > 0) {
      current = addLabel(current, label);
    } else if (current != nullptr) {
      current->label = copyOf(label);
    }
    if (label != nullptr) env->ReleaseStringUTFChars(element, label);
  }
  // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): with no first node, nothing leads to the others.
  return head;
}

}  // namespace zel::bridge
