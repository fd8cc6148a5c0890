#include "bridge/marshal/distinguished_names.h"

#include <cstdlib>
#include <iterator>

#include "bridge/frame/trace.h"
#include "bridge/marshal/strings_and_bytes.h"
#include "bridge/marshal/text_trace.h"

namespace zel::bridge {

namespace {

/** Attribute is one named part of a name: its Java field, its record field and its trace. */
struct Attribute {
  const char* javaField;
  char* ZELKMDNItem::*recordField;
  TextTrace trace;
};

constexpr Attribute kAttributes[] = {
    {"cn", &ZELKMDNItem::cn, TextTrace{"JNI_DEBUG......ccn = %s\n"}},
    {"ou", &ZELKMDNItem::ou, TextTrace{"JNI_DEBUG......cou = %s\n"}},
    {"o", &ZELKMDNItem::o, TextTrace{"JNI_DEBUG......co = %s\n"}},
    {"l", &ZELKMDNItem::l, TextTrace{"JNI_DEBUG......cl = %s\n"}},
    {"s", &ZELKMDNItem::s, TextTrace{"JNI_DEBUG......cs = %s\n"}},
    {"pc", &ZELKMDNItem::pc, TextTrace{"JNI_DEBUG......cpc = %s\n"}},
    {"c", &ZELKMDNItem::c, TextTrace{"JNI_DEBUG......cc = %s\n"}},
};

constexpr std::size_t kAttributeCount = std::size(kAttributes);

constexpr const char* kDNItemConstructor =
    "(Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;"
    "Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;[B)V";

/** copyAttribute leaves the record's field as it is when Java has no value. */
void copyAttribute(JNIEnv* env, jstring value, const Attribute& attribute, ZELKMDNItem* dn) {
  const char* text = value == nullptr ? nullptr : env->GetStringUTFChars(value, nullptr);
  attribute.trace(text);
  if (text == nullptr) return;
  dn->*attribute.recordField = ZELKM_Strdup(text);
  env->ReleaseStringUTFChars(value, text);
}

}  // namespace

void JavaDNItem2CDN(JNIEnv* env, jobject dnItem, ZELKMDNItem** out) {
  if (out == nullptr) return;
  *out = nullptr;
  if (dnItem == nullptr) return;
  jclass dnItemClass = env->GetObjectClass(dnItem);
  if (dnItemClass == nullptr) return;

  jfieldID fields[kAttributeCount];
  for (std::size_t i = 0; i < kAttributeCount; ++i) {
    fields[i] = env->GetFieldID(dnItemClass, kAttributes[i].javaField, "Ljava/lang/String;");
  }
  jstring values[kAttributeCount];
  for (std::size_t i = 0; i < kAttributeCount; ++i) {
    values[i] = static_cast<jstring>(env->GetObjectField(dnItem, fields[i]));
  }

  *out = static_cast<ZELKMDNItem*>(std::malloc(sizeof(ZELKMDNItem)));
  if (*out == nullptr) return;
  ZELKM_InitDNItem(out);
  for (std::size_t i = 0; i < kAttributeCount; ++i) {
    copyAttribute(env, values[i], kAttributes[i], *out);
  }
}

jobject newJavaDNItem(JNIEnv* env, const ItemClasses& classes, const ZELKMDNItem* dn) {
  if (dn == nullptr) return nullptr;
  jclass dnItemClass = env->FindClass(classes.dnItem);
  if (dnItemClass == nullptr) return nullptr;
  jmethodID constructor = env->GetMethodID(dnItemClass, "<init>", kDNItemConstructor);
  if (constructor == nullptr) return nullptr;
  jbyteArray der = newJavaByteArray(env, dn->derData, dn->derLength);
  if (der == nullptr) return nullptr;

  jstring cn = newJavaString(env, dn->cn);
  jstring ou = newJavaString(env, dn->ou);
  jstring o = newJavaString(env, dn->o);
  jstring l = newJavaString(env, dn->l);
  jstring s = newJavaString(env, dn->s);
  jstring pc = newJavaString(env, dn->pc);
  jstring c = newJavaString(env, dn->c);
  const char* optionalFields[] = {dn->optionalField1, dn->optionalField2, dn->optionalField3,
                                  dn->optionalField4};
  jstring optionals[std::size(optionalFields)];
  bool hasOptional = false;
  for (std::size_t i = 0; i < std::size(optionalFields); ++i) {
    optionals[i] = newJavaString(env, optionalFields[i]);
    hasOptional = hasOptional || optionalFields[i] != nullptr;
  }

  jobject item = env->NewObject(dnItemClass, constructor, cn, ou, o, l, s, pc, c,
                                static_cast<jstring>(nullptr), der);
  if (hasOptional) {
    jmethodID addOptionalField =
        env->GetMethodID(dnItemClass, "addOptionalField", "(Ljava/lang/String;)V");
    if (addOptionalField == nullptr) return nullptr;
    for (std::size_t i = 0; i < std::size(optionalFields); ++i) {
      if (optionalFields[i] != nullptr) env->CallVoidMethod(item, addOptionalField, optionals[i]);
    }
  }
  traceMessage("JNI_DEBUG......jDNItemClass = 0x%x, retObj = 0x%x\n", lowBits(dnItemClass),
               lowBits(item));
  return item;
}

}  // namespace zel::bridge
