#include "engine/km/keydb/directory.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engine/km/keydb/fields.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

sys::ByteView context() { return sys::bytesOf("directory"); }

void toggle(Digest& sum, const Digest& member) {
  std::ranges::transform(sum, member, sum.begin(), [](std::uint8_t one, std::uint8_t other) {
    return static_cast<std::uint8_t>(one ^ other);
  });
}

std::optional<Membership> readMembership(FieldReader& fields) {
  const std::optional<std::int64_t> count = fields.number();
  const std::optional<sys::ByteView> sum = fields.bytes();
  Membership membership;
  if (!count || !sum || sum->size() != membership.sum.size()) return std::nullopt;
  membership.count = *count;
  std::ranges::copy(*sum, membership.sum.begin());
  return membership;
}

std::optional<Directory> decode(sys::ByteView plain) {
  FieldReader fields(plain);
  const std::optional<Membership> keys = readMembership(fields);
  const std::optional<Membership> requests = readMembership(fields);
  const std::optional<std::int64_t> defaultKey = fields.number();
  const std::optional<std::int64_t> lastId = fields.number();
  if (!keys || !requests || !defaultKey || !lastId || !fields.atEnd()) return std::nullopt;
  return Directory{*keys, *requests, *defaultKey, *lastId};
}

sys::SecretBytes encode(const Directory& directory) {
  return FieldWriter<sys::SecretBytes>()
      .number(directory.keys.count)
      .bytes(directory.keys.sum)
      .number(directory.requests.count)
      .bytes(directory.requests.sum)
      .number(directory.defaultKey)
      .number(directory.lastId)
      .take();
}

}  // namespace

void Membership::add(const Digest& member) {
  ++count;
  toggle(sum, member);
}

void Membership::remove(const Digest& member) {
  --count;
  toggle(sum, member);
}

sys::Result<Directory> readDirectory(Connection& connection, const DatabaseKeys& keys) {
  sys::Result<Statement> select = connection.prepare("SELECT sealed FROM directory WHERE id = 1");
  if (!select) return select.failure();
  sys::Result<bool> row = select.value().step();
  if (!row) return row.failure();
  std::optional<Directory> directory;
  if (row.value()) {
    sys::Result<sys::SecretBytes> plain =
        unseal(keys.directory(), context(), select.value().blob(0));
    if (!plain && plain.code() != ZELKM_ERR_DATABASE_KEY_INTEGRITY) return plain.failure();
    if (plain) directory = decode(plain.value());
  }
  if (!directory) {
    return sys::fail(ZELKM_ERR_DATABASE_CORRUPTION, "the directory of records is damaged");
  }
  return *directory;
}

sys::Status writeDirectory(Connection& connection, const DatabaseKeys& keys,
                           const Directory& directory) {
  sys::Result<Sealed> sealed = seal(keys.directory(), context(), encode(directory));
  if (!sealed) return sealed.failure();
  sys::Result<Statement> insert =
      connection.prepare("INSERT OR REPLACE INTO directory (id, sealed) VALUES (1, ?1)");
  if (!insert) return insert.failure();
  return insert.value().bind(1, sys::ByteView(sealed.value())).run();
}

}  // namespace zel::km
