#include <algorithm>
#include <map>

#include "tests/engine/errors/provocation.h"

namespace zel::km::errors {

namespace {

constexpr const char* kIntroduction = R"(# What the engine answers

Every operation of `bridge/kmlib/zelkm_operations.h`, the codes that it answers besides 0, and when.
Each line is made to happen by a test, which finds besides that the files hold what they held before.
The table of the test is `tests/engine/errors/troubles_*.cpp`; `script/errors-table` writes this file
from it.

A wrong password, damage, and an algorithm or format that is not known are never told alike:

| | wrong password | damaged | not known |
|---|---|---|---|
| key database | 16 | 18, 19, 20 | 15 |
| PFX | 120 | 119 | 122 |
| encrypted private key | 16 | 20 | 122 |

The engine's trace says in words what a code cannot.
)";

constexpr struct {
  int code;
  const char* name;
} kNames[] = {
#define ROW(code, name) {code, #name},
    ZELKM_ERROR_CODES(ROW)
#undef ROW
};

std::string nameOf(int code) { return kNames[code - 1].name; }

/** Rows of code and reasons, each once, the codes in their order. */
using Table = std::map<int, std::vector<std::string>>;

void add(Table& table, const Trouble& trouble) {
  std::vector<std::string>& reasons = table[trouble.code];
  if (std::find(reasons.begin(), reasons.end(), trouble.when) == reasons.end()) {
    reasons.emplace_back(trouble.when);
  }
}

std::string text(const Table& table) {
  std::string text = "| Code | Name | When |\n|---|---|---|\n";
  for (const auto& [code, reasons] : table) {
    std::string all;
    for (const std::string& reason : reasons) all += (all.empty() ? "" : "; ") + reason;
    text += "| " + std::to_string(code) + " | `" + nameOf(code) + "` | " + all + " |\n";
  }
  return text;
}

std::string anchorOf(std::string title) {
  std::transform(title.begin(), title.end(), title.begin(), [](unsigned char c) {
    return static_cast<char>(c == ' ' ? '-' : std::tolower(c));
  });
  return title;
}

std::string chapterOf(const std::string& title) {
  Table table;
  for (const Troubles& troubles : allTroubles()) {
    if (troubles.title == nullptr || troubles.title != title) continue;
    for (const Trouble& trouble : troubles.troubles) add(table, trouble);
  }
  return "\n### " + title + "\n\n" + text(table);
}

std::vector<std::string> titles() {
  std::vector<std::string> titles;
  for (const Troubles& troubles : allTroubles()) {
    if (troubles.title == nullptr) continue;
    if (std::find(titles.begin(), titles.end(), troubles.title) == titles.end()) {
      titles.emplace_back(troubles.title);
    }
  }
  return titles;
}

bool concerns(const Troubles& troubles, const std::string& operation) {
  return std::find(troubles.operations.begin(), troubles.operations.end(), operation) !=
         troubles.operations.end();
}

std::string sectionOf(const Operation& operation) {
  std::string section = "\n### " + std::string(operation.name) + "\n\n";
  if (operation.call == nullptr) return section + "Answers no code.\n";
  Table table;
  std::vector<std::string> links;
  for (const Troubles& troubles : allTroubles()) {
    if (!concerns(troubles, operation.name)) continue;
    if (troubles.title == nullptr) {
      for (const Trouble& trouble : troubles.troubles) add(table, trouble);
      continue;
    }
    const std::string link =
        "[" + std::string(troubles.title) + "](#" + anchorOf(troubles.title) + ")";
    if (std::find(links.begin(), links.end(), link) == links.end()) links.push_back(link);
  }
  if (table.empty() && links.empty()) return section + "Answers 0 always.\n";
  if (!table.empty()) section += text(table);
  if (!table.empty() && !links.empty()) section += "\n";
  for (const std::string& link : links) section += "- " + link + "\n";
  return section;
}

std::string sectionOfUnprovoked() {
  std::string section =
      "\n## Codes that no test brings about\n\n| Code | Name | When | Why not "
      "|\n|---|---|---|---|\n";
  for (const Unprovoked& each : unprovoked()) {
    section += "| " + std::to_string(each.code) + " | `" + nameOf(each.code) + "` | " + each.when +
               " | " + each.why + " |\n";
  }
  return section;
}

}  // namespace

std::vector<Troubles> allTroubles() {
  std::vector<Troubles> all;
  for (const auto& some : {troublesOfStores(), troublesOfArguments(), troublesOfDatabases(),
                           troublesOfFiles(), troublesOfEntries(), troublesOfCertificates(),
                           troublesOfChains(), troublesOfTokens(), troublesOfCertificateStores()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

namespace {
constexpr const char* kOnlyWithoutMemory = "it fails only when memory is exhausted, and that is 79";
}  // namespace

const std::vector<Unprovoked>& unprovoked() {
  static const std::vector<Unprovoked> all = {
      {ZELKM_ERR_UNKNOWN, "an exception that nobody foresaw", "none is known"},
      {ZELKM_ERR_GET_TIME, "OpenSSL cannot write the validity of a certificate",
       "it fails for years alone that are refused before (129)"},
      {ZELKM_ERR_KDB2KYR, "a key ring would have more than 1 GiB, which would not be read again",
       "a test would need a gigabyte"},
      {ZELKM_ERR_BASE64_ENCODING, "OpenSSL cannot write a PEM file", kOnlyWithoutMemory},
      {ZELKM_ERR_ISSUING_CERTIFICATE, "OpenSSL cannot make the extensions of a certificate",
       kOnlyWithoutMemory},
  };
  return all;
}

std::string document() {
  std::string text = kIntroduction;
  text += "\n## What operations have in common\n";
  for (const std::string& title : titles()) text += chapterOf(title);
  text += "\n## By operation\n";
  for (const Operation& operation : operations()) text += sectionOf(operation);
  return text + sectionOfUnprovoked();
}

}  // namespace zel::km::errors
