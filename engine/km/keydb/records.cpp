#include "engine/km/keydb/records.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "engine/km/keydb/fields.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

const char* nameOf(Table table) { return table == Table::keys ? "keys" : "requests"; }

/** The columns of a record that stand in the clear, then its seal, in the order of kColumns. */
constexpr const char* kColumns = "id, label, trusted, public_key_hash, subject_hash, seal";

std::optional<Digest> digestIn(sys::ByteView column) {
  Digest value;
  if (column.size() != value.size()) return std::nullopt;
  std::ranges::copy(column, value.begin());
  return value;
}

/** What a record is bound to: all of it that stands in the clear. */
sys::Bytes contextOf(Table table, const Record& record) {
  return FieldWriter<sys::Bytes>()
      .text(nameOf(table))
      .number(record.id)
      .text(record.label)
      .number(record.trusted ? 1 : 0)
      .bytes(record.lookup.publicKey)
      .bytes(record.lookup.subject)
      .take();
}

// The seal is different each time a record is written, so it stands for the content here.
sys::Result<Digest> memberOf(const DatabaseKeys& keys, Table table, const Record& record,
                             sys::ByteView seal) {
  return authenticate(keys.membership(),
                      FieldWriter<sys::Bytes>().bytes(contextOf(table, record)).bytes(seal).take());
}

sys::Failure damaged(Table table, const Record& record) {
  return sys::fail(ZELKM_ERR_DATABASE_KEY_INTEGRITY, "record %lld of %s is damaged",
                   static_cast<long long>(record.id), nameOf(table));
}

// A label that stands there as a blob reads the same, but no search for the text finds it.
bool hasOurTypes(const Statement& row) {
  constexpr int kTypes[] = {SQLITE_INTEGER, SQLITE_TEXT, SQLITE_INTEGER,
                            SQLITE_BLOB,    SQLITE_BLOB, SQLITE_BLOB};
  int column = 0;
  return std::ranges::all_of(kTypes, [&](int type) { return row.type(column++) == type; });
}

/** The clear part of the row that the statement stands on. */
sys::Result<Record> clearPart(Table table, const Statement& row) {
  Record record;
  const bool ours = hasOurTypes(row);
  record.id = row.integer(0);
  record.label = row.text(1);
  const std::int64_t trusted = row.integer(2);
  const std::optional<Digest> publicKey = digestIn(row.blob(3));
  const std::optional<Digest> subject = digestIn(row.blob(4));
  if (!ours || !publicKey || !subject || trusted < 0 || trusted > 1) return damaged(table, record);
  record.trusted = trusted == 1;
  record.lookup = {*publicKey, *subject};
  return record;
}

sys::Result<Record> openRecord(Table table, const Statement& row, const DatabaseKeys& keys) {
  sys::Result<Record> clear = clearPart(table, row);
  if (!clear) return clear;
  Record& record = clear.value();
  Sealed sealed(row.blob(5).begin(), row.blob(5).end());
  const sys::ByteView content = row.blob(6);
  sealed.insert(sealed.end(), content.begin(), content.end());
  sys::Result<sys::SecretBytes> plain = unseal(keys.records(), contextOf(table, record), sealed);
  if (plain.code() == ZELKM_ERR_DATABASE_KEY_INTEGRITY) return damaged(table, record);
  if (!plain) return plain.failure();
  FieldReader fields(plain.value());
  const std::optional<sys::ByteView> document = fields.bytes();
  const std::optional<sys::ByteView> privateKey = fields.bytes();
  if (!document || !privateKey || !fields.atEnd()) return damaged(table, record);
  record.document.assign(document->begin(), document->end());
  record.privateKey.assign(privateKey->begin(), privateKey->end());
  return clear;
}

void bindValue(Statement& statement, int index, const Condition& condition) {
  std::visit([&](const auto& value) { statement.bind(index, value); }, condition.value);
}

}  // namespace

Condition byLabel(const std::string& label) { return {"label", label}; }
Condition byPublicKey(const Digest& hash) { return {"public_key_hash", hash}; }
Condition bySubject(const Digest& hash) { return {"subject_hash", hash}; }
Condition byId(std::int64_t id) { return {"id", id}; }

sys::Result<std::vector<Record>> Records::find(Table table, const Condition& condition) {
  sys::Result<std::vector<std::int64_t>> ids = idsOf(table, condition);
  if (!ids) return ids.failure();
  // An index is not sealed, and nothing but the row itself says what the row is.
  sys::Result<Statement> select =
      connection_.prepare(std::string("SELECT ") + kColumns + ", content FROM " + nameOf(table) +
                          " NOT INDEXED WHERE id = ?1 AND " + condition.column + " = ?2");
  if (!select) return select.failure();
  Statement& row = select.value();
  std::vector<Record> found;
  for (const std::int64_t id : ids.value()) {
    row.rewind();
    row.bind(1, id);
    bindValue(row, 2, condition);
    sys::Result<bool> there = row.step();
    if (!there) return there.failure();
    if (!there.value()) {
      return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "an index of %s is wrong about record %lld",
                       nameOf(table), static_cast<long long>(id));
    }
    sys::Result<Record> record = openRecord(table, row, keys_);
    if (!record) return record.failure();
    found.push_back(std::move(record.value()));
  }
  return found;
}

sys::Result<std::vector<std::string>> Records::labels(Table table) {
  sys::Result<Directory> known = directory();
  if (!known) return known.failure();
  sys::Result<Statement> select = connection_.prepare(std::string("SELECT ") + kColumns + " FROM " +
                                                      nameOf(table) + " ORDER BY id");
  if (!select) return select.failure();
  Statement& row = select.value();
  std::vector<std::string> labels;
  Membership there;
  for (;;) {
    sys::Result<bool> more = row.step();
    if (!more) return more.failure();
    if (!more.value()) break;
    sys::Result<Record> record = clearPart(table, row);
    if (!record) return record.failure();
    sys::Result<Digest> member = memberOf(keys_, table, record.value(), row.blob(5));
    if (!member) return member.failure();
    there.add(member.value());
    labels.push_back(std::move(record.value().label));
  }
  if (there != known.value().of(table)) {
    return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION,
                     "%s: %lld records, not the %lld that the directory knows, or not the same",
                     nameOf(table), static_cast<long long>(there.count),
                     static_cast<long long>(known.value().of(table).count));
  }
  return labels;
}

sys::Status Records::setDefaultKey(std::int64_t id) {
  sys::Result<Directory> known = directory();
  if (!known) return known.failure();
  known.value().defaultKey = id;
  return writeDirectory(connection_, keys_, known.value());
}

sys::Status Records::insert(Table table, Record& record) {
  sys::Result<Directory> known = directory();
  if (!known) return known.failure();
  sys::Result<Statement> same =
      connection_.prepare(std::string("SELECT 1 FROM ") + nameOf(table) + " WHERE label = ?1");
  if (!same) return same.failure();
  sys::Result<bool> inUse = same.value().bind(1, record.label).step();
  if (!inUse) return inUse.failure();
  if (inUse.value()) {
    return sys::fail(ZELKM_ERR_DATABASE_DUPLICATE_KEY_LABEL, "the label \"%s\" is in use",
                     record.label.c_str());
  }
  record.id = ++known.value().lastId;
  return write(table, record, "INSERT INTO ", known.value());
}

sys::Status Records::replace(Table table, const Record& record) {
  sys::Result<Directory> known = directory();
  if (!known) return known.failure();
  sys::Result<Digest> member = memberWithId(table, record.id);
  if (!member) return member.failure();
  known.value().of(table).remove(member.value());
  return write(table, record, "REPLACE INTO ", known.value());
}

sys::Status Records::remove(Table table, std::int64_t id) {
  sys::Result<Directory> known = directory();
  if (!known) return known.failure();
  sys::Result<Digest> member = memberWithId(table, id);
  if (!member) return member.failure();
  sys::Result<Statement> remove =
      connection_.prepare(std::string("DELETE FROM ") + nameOf(table) + " WHERE id = ?1");
  if (!remove) return remove.failure();
  sys::Status removed = remove.value().bind(1, id).run();
  if (!removed) return removed;
  known.value().of(table).remove(member.value());
  if (table == Table::keys && known.value().defaultKey == id) known.value().defaultKey = 0;
  return writeDirectory(connection_, keys_, known.value());
}

sys::Status Records::write(Table table, const Record& record, const char* sql,
                           Directory& directory) {
  const sys::SecretBytes plain =
      FieldWriter<sys::SecretBytes>().bytes(record.document).bytes(record.privateKey).take();
  sys::Result<Sealed> sealed = seal(keys_.records(), contextOf(table, record), plain);
  if (!sealed) return sealed.failure();
  const sys::ByteView seal = sys::ByteView(sealed.value()).first(kSealLength);
  sys::Result<Digest> member = memberOf(keys_, table, record, seal);
  if (!member) return member.failure();
  sys::Result<Statement> insert =
      connection_.prepare(std::string(sql) + nameOf(table) + " (" + kColumns +
                          ", content) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
  if (!insert) return insert.failure();
  sys::Status written = insert.value()
                            .bind(1, record.id)
                            .bind(2, record.label)
                            .bind(3, std::int64_t{record.trusted})
                            .bind(4, sys::ByteView(record.lookup.publicKey))
                            .bind(5, sys::ByteView(record.lookup.subject))
                            .bind(6, seal)
                            .bind(7, sys::ByteView(sealed.value()).subspan(kSealLength))
                            .run();
  if (!written) return written;
  directory.of(table).add(member.value());
  return writeDirectory(connection_, keys_, directory);
}

sys::Result<std::vector<std::int64_t>> Records::idsOf(Table table, const Condition& condition) {
  sys::Result<Statement> select =
      connection_.prepare(std::string("SELECT id FROM ") + nameOf(table) + " WHERE " +
                          condition.column + " = ?1 ORDER BY id");
  if (!select) return select.failure();
  bindValue(select.value(), 1, condition);
  std::vector<std::int64_t> ids;
  for (;;) {
    sys::Result<bool> more = select.value().step();
    if (!more) return more.failure();
    if (!more.value()) return ids;
    ids.push_back(select.value().integer(0));
  }
}

sys::Result<Digest> Records::memberWithId(Table table, std::int64_t id) {
  sys::Result<Statement> select = connection_.prepare(std::string("SELECT ") + kColumns + " FROM " +
                                                      nameOf(table) + " WHERE id = ?1");
  if (!select) return select.failure();
  sys::Result<bool> row = select.value().bind(1, id).step();
  if (!row) return row.failure();
  if (!row.value()) return sys::Failure{ZELKM_ERR_DATABASE_CORRUPTION};
  sys::Result<Record> record = clearPart(table, select.value());
  if (!record) return record.failure();
  return memberOf(keys_, table, record.value(), select.value().blob(5));
}

}  // namespace zel::km
