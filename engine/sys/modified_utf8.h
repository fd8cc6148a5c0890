#ifndef ZEL_SYS_MODIFIED_UTF8_H_
#define ZEL_SYS_MODIFIED_UTF8_H_

#include <string>
#include <string_view>

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * Between the text of the C interface and the text of certificates and files.
 *
 * The C interface carries the Java Native Interface's modified UTF-8: U+0000 is C0 80, and a
 * character beyond the basic plane is its two UTF-16 surrogates, three bytes each. Everything that
 * other programs read is real UTF-8 (RFC 3629):
 *
 *     Result<std::string> label = toUtf8(item->label);
 *     char* text = strdup(toModifiedUtf8(label.value()).c_str());
 */

namespace zel::sys {

/**
 * toUtf8 answers the text as real UTF-8, which may hold U+0000. Text that already is real UTF-8 is
 * taken too. ZELKM_ERR_PARAMETER when the bytes are neither, an unpaired surrogate included.
 */
ZEL_SYS_API Result<std::string> toUtf8(std::string_view modified);

/** secretToUtf8 is toUtf8 for a password. */
ZEL_SYS_API Result<SecretBytes> secretToUtf8(std::string_view modified);

/** toModifiedUtf8 answers UTF-8 as modified UTF-8, which holds no NUL byte; "?" for a broken byte.
 */
ZEL_SYS_API std::string toModifiedUtf8(std::string_view text);

}  // namespace zel::sys

#endif  // ZEL_SYS_MODIFIED_UTF8_H_
