#ifndef ZEL_KM_KEYDB_RECORDS_H_
#define ZEL_KM_KEYDB_RECORDS_H_

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "engine/km/keydb/directory.h"
#include "engine/km/keydb/key_hierarchy.h"
#include "engine/km/keydb/sqlite.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"

/**
 * @file
 * The sealed records of a key database, read and changed together with their directory. All calls
 * are made inside a transaction of the caller's:
 *
 *     Records records(connection, keys);
 *     Result<std::vector<Record>> found = records.find(Table::keys, byLabel("server"));
 */

namespace zel::km {

/** What a record is looked up by; both are SHA-256. */
struct LookupKeys {
  Digest publicKey{}; /**< of the SubjectPublicKeyInfo */
  Digest subject{};   /**< of the subject in canonical form */
};

/** A Record is a certificate or a request, with its private key. */
struct Record {
  std::int64_t id = 0; /**< given by Records::insert; ids rise in the order of arrival */
  std::string label;
  bool trusted = false;
  LookupKeys lookup;
  sys::Bytes document;         /**< the certificate or request */
  sys::SecretBytes privateKey; /**< empty when there is none */
};

/** A Condition selects records by the value of one column. */
struct Condition {
  const char* column;
  std::variant<std::int64_t, std::string, Digest> value;
};

Condition byLabel(const std::string& label);
Condition byPublicKey(const Digest& hash);
Condition bySubject(const Digest& hash);
Condition byId(std::int64_t id);

class Records {
 public:
  Records(Connection& connection, const DatabaseKeys& keys)
      : connection_(connection), keys_(keys) {}

  /**
   * In the order of arrival.
   *  - ZELKM_ERR_DATABASE_KEY_INTEGRITY (20): a record is not as it was sealed.
   *  - ZELKM_ERR_DATABASE_CORRUPTION (18): an index answers records that are not what it says.
   */
  sys::Result<std::vector<Record>> find(Table table, const Condition& condition);

  /**
   * All labels in the order of arrival. ZELKM_ERR_DATABASE_CORRUPTION (18) when the records are
   * not those that the directory knows.
   */
  sys::Result<std::vector<std::string>> labels(Table table);

  sys::Result<Directory> directory() { return readDirectory(connection_, keys_); }
  sys::Status setDefaultKey(std::int64_t id);

  /** ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL (23) when the label is in use in the table. */
  sys::Status insert(Table table, Record& record);
  /** Puts the record in the place of the one that has its id. */
  sys::Status replace(Table table, const Record& record);
  sys::Status remove(Table table, std::int64_t id);

 private:
  sys::Status write(Table table, const Record& record, const char* sql, Directory& directory);
  sys::Result<std::vector<std::int64_t>> idsOf(Table table, const Condition& condition);
  sys::Result<Digest> memberWithId(Table table, std::int64_t id);

  Connection& connection_;
  const DatabaseKeys& keys_;
};

}  // namespace zel::km

#endif  // ZEL_KM_KEYDB_RECORDS_H_
