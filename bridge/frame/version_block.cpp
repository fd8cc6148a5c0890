#include "bridge/frame/version_block.h"

// Values start in column 23; the stamps change with a release, the size never does. Without its
// exact size the array would silently be padded or lose its terminator.
// clang-format off
char zelkjni_SCCSInfo[] =
    "@(#)CompanyName:      The authors of Vosmar\n"
    "@(#)LegalTrademarks:  Vosmar is the name of this project only\n"
    "@(#)FileDescription:  Java bridge of the Vosmar key management library\n"
    "@(#)FileVersion:      1.0.0.0\n"
    "@(#)InternalName:     zel7kjni\n"
    "@(#)LegalNotice:      The authors of Vosmar keep their rights in this work.\n"
    "                      It comes as it is, without warranty of any kind, and\n"
    "                      whoever uses it answers for that use. The parts that\n"
    "                      others wrote stay under the terms of their authors,\n"
    "                      and this notice goes along with every copy of the library.\n"
    "@(#)OriginalFilename: libzel7kjni_64.so\n"
    "@(#)ProductName:      vosmar 2611210001\n"
    "@(#)ProductVersion:   1.0.0.0\n"
    "@(#)ProductInfo:      26/11/21.00:00:00.26/11/21.00:00:00\n"
    "@(#)SourceLevels:     kmlib=1.0 frame=1.0 marshal=1.0 keydb=1.0 token=1.0 certstore=1.0 legacy=1.0\n";
// clang-format on

static_assert(sizeof zelkjni_SCCSInfo == 887, "the version block has a fixed size");
