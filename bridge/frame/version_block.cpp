#include "bridge/frame/version_block.h"

// Values start in column 23; the version comes from the build (VOSMAR_VERSION, and its first two
// numbers as VOSMAR_LEVEL), the stamps change with a release, the size never does. Without its
// exact size the array would silently be padded or lose its terminator.
// clang-format off
char zelkjni_SCCSInfo[] =
    "@(#)CompanyName:      The authors of Vosmar\n"
    "@(#)LegalTrademarks:  Vosmar is the name of this project only\n"
    "@(#)FileDescription:  Java bridge of the Vosmar key management library\n"
    "@(#)FileVersion:      " VOSMAR_VERSION ".0\n"
    "@(#)InternalName:     zel7kjni\n"
    "@(#)LegalNotice:      The authors of Vosmar keep their rights in this work.\n"
    "                      It comes as it is, without warranty of any kind, and\n"
    "                      whoever uses it answers for that use. The parts that\n"
    "                      others wrote stay under the terms of their authors,\n"
    "                      and this notice goes along with every copy of the library.\n"
    "@(#)OriginalFilename: libzel7kjni_64.so\n"
    "@(#)ProductName:      vosmar 2611210001\n"
    "@(#)ProductVersion:   " VOSMAR_VERSION ".0\n"
    "@(#)ProductInfo:      26/11/21.00:00:00.26/11/21.00:00:00\n"
    "@(#)SourceLevels:     kmlib=" VOSMAR_LEVEL " frame=" VOSMAR_LEVEL " marshal=" VOSMAR_LEVEL
    " keydb=" VOSMAR_LEVEL " token=" VOSMAR_LEVEL " certstore=" VOSMAR_LEVEL " legacy=" VOSMAR_LEVEL "\n";
// clang-format on

static_assert(sizeof zelkjni_SCCSInfo == 887,
              "the version block has a fixed size: what a value gains, another has to lose");
