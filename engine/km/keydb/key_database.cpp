#include "engine/km/keydb/key_database.h"

#include <utility>

#include "engine/cms/epki.h"
#include "engine/km/keydb/lookup_keys.h"
#include "engine/km/keydb/password_rules.h"
#include "engine/km/keydb/sharing.h"
#include "engine/km/store/crypto_mode.h"
#include "engine/km/store/key_material.h"
#include "engine/sys/trace.h"

namespace zel::km {

namespace {

sys::Failure noSuchLabel(const Label& label) {
  return sys::fail(ZELKM_ERR_KEY_GET_BY_LABEL, "nothing has the label \"%s\"", label.c_str());
}

KeyEntry keyEntry(Record record, const Directory& directory) {
  KeyEntry entry;
  entry.isDefault = record.id == directory.defaultKey;
  entry.label = Label::kept(std::move(record.label));
  entry.certificate = std::move(record.document);
  entry.privateKey.pkcs8 = std::move(record.privateKey);
  entry.trusted = record.trusted;
  return entry;
}

RequestEntry requestEntry(Record record) {
  RequestEntry entry;
  entry.label = Label::kept(std::move(record.label));
  entry.request = std::move(record.document);
  entry.privateKey.pkcs8 = std::move(record.privateKey);
  return entry;
}

sys::Result<Record> recordOf(const Label& label, const sys::Bytes& document,
                             const PrivateKey& privateKey, sys::Result<Subject> subject,
                             bool approvedOnly) {
  if (privateKey.present() && privateKey.pkcs8.empty()) {
    return sys::fail(ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL, "a key that does not leave its store");
  }
  if (!subject) return subject.failure();
  if (approvedOnly) {
    sys::Status approved = checkApproved(subject.value().publicKey);
    if (!approved) return approved.failure();
  }
  Record record;
  record.label = label.text();
  record.lookup = subject.value().lookup;
  record.document = document;
  record.privateKey = privateKey.pkcs8;
  return record;
}

sys::Result<Record> recordOf(const KeyEntry& entry, bool approvedOnly) {
  sys::Result<Record> record = recordOf(entry.label, entry.certificate, entry.privateKey,
                                        subjectOfCertificate(entry.certificate), approvedOnly);
  if (record) record.value().trusted = entry.trusted;
  return record;
}

sys::Result<Record> recordOf(const RequestEntry& entry, bool approvedOnly) {
  return recordOf(entry.label, entry.request, entry.privateKey, subjectOfRequest(entry.request),
                  approvedOnly);
}

sys::Result<Record> withLabel(Records& records, Table table, const Label& label) {
  sys::Result<std::vector<Record>> found = records.find(table, byLabel(label.text()));
  if (!found) return found.failure();
  if (found.value().empty()) return noSuchLabel(label);
  return std::move(found.value().front());
}

}  // namespace

sys::Result<std::unique_ptr<Store>> KeyDatabase::open(const sys::FileName& name,
                                                      const PasswordOrStash& password) {
  sys::Result<UnlockedFile> file = UnlockedFile::open(name, password);
  if (!file) return file.failure();
  sys::Status valid = checkNotExpired(file.value().parameters().expiresAt);
  if (!valid) return valid.failure();
  return of(std::move(file.value()));
}

sys::Result<std::unique_ptr<Store>> KeyDatabase::of(UnlockedFile file) {
  sys::Result<std::shared_ptr<const DatabaseFile>> shared =
      OpenFiles::instance().share(std::move(file));
  if (!shared) return shared.failure();
  return std::unique_ptr<Store>(std::make_unique<KeyDatabase>(std::move(shared.value())));
}

template <typename Body>
std::invoke_result_t<Body&, Connection&, Records&> KeyDatabase::transact(Transaction::Kind kind,
                                                                         Body& body) {
  if (inUse_ != nullptr) {
    Records records(*inUse_, file_->keys());
    return body(*inUse_, records);
  }
  sys::Result<BorrowedConnection> borrowed = file_->borrow();
  if (!borrowed) return borrowed.failure();
  Connection& connection = *borrowed.value();
  return Transaction::run(connection, kind, [&] {
    struct InUse {
      Connection*& place;
      ~InUse() { place = nullptr; }
    } inUse{inUse_};
    inUse_ = &connection;
    Records records(connection, file_->keys());
    return body(connection, records);
  });
}

sys::Result<std::vector<Label>> KeyDatabase::keyLabels() { return labels(Table::keys); }

sys::Result<std::vector<Label>> KeyDatabase::requestLabels() { return labels(Table::requests); }

sys::Result<KeyEntry> KeyDatabase::findKey(const Label& label) {
  sys::Result<std::vector<KeyEntry>> found = findKeys(byLabel(label.text()));
  if (!found) return found.failure();
  if (found.value().empty()) return noSuchLabel(label);
  return std::move(found.value().front());
}

sys::Result<RequestEntry> KeyDatabase::findRequest(const Label& label) {
  sys::Result<std::vector<RequestEntry>> found = findRequests(byLabel(label.text()));
  if (!found) return found.failure();
  if (found.value().empty()) return noSuchLabel(label);
  return std::move(found.value().front());
}

sys::Result<KeyEntry> KeyDatabase::defaultKey() {
  return reading([](Connection&, Records& records) -> sys::Result<KeyEntry> {
    sys::Result<Directory> directory = records.directory();
    if (!directory) return directory.failure();
    sys::Result<std::vector<Record>> found =
        records.find(Table::keys, byId(directory.value().defaultKey));
    if (!found) return found.failure();
    if (found.value().empty()) {
      return sys::fail(ZELKM_ERR_KEYDB_DEFAULT_KEY_NULL, "no key is the default");
    }
    return keyEntry(std::move(found.value().front()), directory.value());
  });
}

sys::Result<std::vector<KeyEntry>> KeyDatabase::findKeysByPublicKey(sys::ByteView publicKey) {
  sys::Result<Digest> hash = digest(publicKey);
  if (!hash) return hash.failure();
  return findKeys(byPublicKey(hash.value()));
}

sys::Result<std::vector<RequestEntry>> KeyDatabase::findRequestsByPublicKey(
    sys::ByteView publicKey) {
  sys::Result<Digest> hash = digest(publicKey);
  if (!hash) return hash.failure();
  return findRequests(byPublicKey(hash.value()));
}

sys::Result<std::vector<KeyEntry>> KeyDatabase::findKeysBySubject(sys::ByteView subject) {
  sys::Result<Digest> hash = digest(subject);
  if (!hash) return hash.failure();
  return findKeys(bySubject(hash.value()));
}

sys::Status KeyDatabase::insertKey(const KeyEntry& entry) {
  sys::Result<Record> record = recordOf(entry, approvedOnly());
  if (!record) return record.failure();
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Status inserted = records.insert(Table::keys, record.value());
    if (!inserted || !entry.isDefault) return inserted;
    return records.setDefaultKey(record.value().id);
  });
}

sys::Status KeyDatabase::insertRequest(const RequestEntry& entry) {
  sys::Result<Record> record = recordOf(entry, approvedOnly());
  if (!record) return record.failure();
  return writing([&](Connection&, Records& records) -> sys::Status {
    return records.insert(Table::requests, record.value());
  });
}

sys::Status KeyDatabase::replaceKey(const KeyEntry& entry) {
  sys::Result<Record> record = recordOf(entry, approvedOnly());
  if (!record) return record.failure();
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Result<Record> replaced = withLabel(records, Table::keys, entry.label);
    if (!replaced) return replaced.failure();
    record.value().id = replaced.value().id;
    sys::Status written = records.replace(Table::keys, record.value());
    if (!written || !entry.isDefault) return written;
    return records.setDefaultKey(record.value().id);
  });
}

sys::Status KeyDatabase::replaceRequest(const RequestEntry& entry) {
  sys::Result<Record> record = recordOf(entry, approvedOnly());
  if (!record) return record.failure();
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Result<Record> replaced = withLabel(records, Table::requests, entry.label);
    if (!replaced) return replaced.failure();
    record.value().id = replaced.value().id;
    return records.replace(Table::requests, record.value());
  });
}

sys::Status KeyDatabase::removeKey(const Label& label) { return removeRecord(Table::keys, label); }

sys::Status KeyDatabase::removeRequest(const Label& label) {
  return removeRecord(Table::requests, label);
}

sys::Status KeyDatabase::setDefault(const Label& label) {
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Result<Record> record = withLabel(records, Table::keys, label);
    if (!record) return record.failure();
    return records.setDefaultKey(record.value().id);
  });
}

sys::Status KeyDatabase::setTrusted(const Label& label, bool trusted) {
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Result<Record> record = withLabel(records, Table::keys, label);
    if (!record) return record.failure();
    record.value().trusted = trusted;
    return records.replace(Table::keys, record.value());
  });
}

sys::Status KeyDatabase::runChanges(const Run& run) {
  return writing([&](Connection&, Records&) { return run(); });
}

sys::Status KeyDatabase::runReading(const Run& run) {
  return reading([&](Connection&, Records&) { return run(); });
}

bool KeyDatabase::approvedOnly() const { return file_->approvedOnly() || approvedMode(); }

sys::Result<sys::Bytes> KeyDatabase::encryptedPrivateKey(const PrivateKey& key) {
  if (key.pkcs8.empty()) return sys::Failure{ZELKM_ERR_KEYREC_PRIVATE_KEY_NULL};
  return reading([&](Connection& connection, Records&) -> sys::Result<sys::Bytes> {
    // Read anew each time: another process may have changed the password.
    sys::Result<Parameters> parameters = readParameters(connection);
    if (!parameters) return parameters.failure();
    sys::Result<cms::PbeKey> under = openPrivateKeyKey(parameters.value(), file_->keys());
    if (!under) return under.failure();
    return cms::encryptPrivateKey(key.pkcs8, under.value());
  });
}

sys::Result<sys::SecretBytes> KeyDatabase::decryptedPrivateKey(sys::ByteView encrypted) {
  return cms::decryptPrivateKey(encrypted, file_->password());
}

sys::Result<std::vector<Label>> KeyDatabase::labels(Table table) {
  return reading([&](Connection&, Records& records) -> sys::Result<std::vector<Label>> {
    sys::Result<std::vector<std::string>> kept = records.labels(table);
    if (!kept) return kept.failure();
    std::vector<Label> labels;
    labels.reserve(kept.value().size());
    for (std::string& label : kept.value()) labels.push_back(Label::kept(std::move(label)));
    return labels;
  });
}

sys::Result<std::vector<KeyEntry>> KeyDatabase::findKeys(const Condition& condition) {
  return reading([&](Connection&, Records& records) -> sys::Result<std::vector<KeyEntry>> {
    sys::Result<Directory> directory = records.directory();
    if (!directory) return directory.failure();
    sys::Result<std::vector<Record>> found = records.find(Table::keys, condition);
    if (!found) return found.failure();
    std::vector<KeyEntry> entries;
    for (Record& record : found.value()) {
      entries.push_back(keyEntry(std::move(record), directory.value()));
    }
    return entries;
  });
}

sys::Result<std::vector<RequestEntry>> KeyDatabase::findRequests(const Condition& condition) {
  return reading([&](Connection&, Records& records) -> sys::Result<std::vector<RequestEntry>> {
    sys::Result<std::vector<Record>> found = records.find(Table::requests, condition);
    if (!found) return found.failure();
    std::vector<RequestEntry> entries;
    for (Record& record : found.value()) entries.push_back(requestEntry(std::move(record)));
    return entries;
  });
}

sys::Status KeyDatabase::removeRecord(Table table, const Label& label) {
  return writing([&](Connection&, Records& records) -> sys::Status {
    sys::Result<Record> record = withLabel(records, table, label);
    if (!record) return record.failure();
    return records.remove(table, record.value().id);
  });
}

}  // namespace zel::km
