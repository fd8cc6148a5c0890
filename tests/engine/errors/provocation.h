#ifndef ZEL_TESTS_ENGINE_ERRORS_PROVOCATION_H_
#define ZEL_TESTS_ENGINE_ERRORS_PROVOCATION_H_

#include <string_view>
#include <vector>

#include "tests/engine/errors/world.h"

/**
 * @file
 * The table of what each operation answers when something is wrong, and how that is brought about.
 * The test makes each of it happen; docs/engine-errors.md is written from it. A row is added where
 * its kin stands:
 *
 *     {ZELKM_ERR_KEY_GET_BY_LABEL, "nothing has the label",
 *      [](World& world) { world.given.label = "nothing"; }},
 */

namespace zel::km::errors {

/** An operation of the C interface, called as it succeeds unless something is wrong. */
struct Operation {
  const char* name;
  int (*call)(World& world); /**< null when it answers no result code */
};

/** Every operation that zelkm_operations.h declares, in its order. */
const std::vector<Operation>& operations();

/** Something that is wrong: the code that tells it, and how it comes about. */
struct Trouble {
  int code;
  const char* when; /**< as it stands in the document, Markdown */
  void (*arrange)(World& world);
};

using Names = std::vector<const char*>;

/** Every operation on a handle that reads or changes entries. */
Names operationsOnEntries();
/** Every operation on a handle. */
Names operationsOnHandles();
/** The names but for those that are left out. */
Names without(Names names, const std::vector<std::string_view>& left);

/** The troubles that the operations named have in common. */
struct Troubles {
  const char* title; /**< of a chapter of its own; null to be told with each operation */
  Names operations;
  std::vector<Trouble> troubles;
};

std::vector<Troubles> troublesOfStores();
std::vector<Troubles> troublesOfArguments();
std::vector<Troubles> troublesOfFiles();
std::vector<Troubles> troublesOfDatabases();
std::vector<Troubles> troublesOfEntries();
std::vector<Troubles> troublesOfCertificates();
std::vector<Troubles> troublesOfChains();
std::vector<Troubles> troublesOfTokens();
std::vector<Troubles> troublesOfCertificateStores();

/** All of them. */
std::vector<Troubles> allTroubles();

/** A code that stands in the sources and that no test brings about. */
struct Unprovoked {
  int code;
  const char* when;
  const char* why;
};
const std::vector<Unprovoked>& unprovoked();

/** docs/engine-errors.md. */
std::string document();

}  // namespace zel::km::errors

#endif  // ZEL_TESTS_ENGINE_ERRORS_PROVOCATION_H_
