#include "tests/contract/contract.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

namespace zel::contract {

Locator::Locator(const KeyDbLocator& fields, std::size_t extent) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  pages_ = static_cast<unsigned char*>(pages);
  mprotect(pages_ + page, page, PROT_NONE);
  unsigned char* at = pages_ + page - extent;
  std::memcpy(at, &fields, extent);
  locator_ = reinterpret_cast<KeyDbLocator*>(at);
}

Locator::~Locator() { munmap(pages_, 2 * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))); }

Name::Name(const char* commonName)
    : record_(static_cast<ZELKMDNItem*>(allocateAsCaller(sizeof(ZELKMDNItem)))) {
  ZELKM_InitDNItem(&record_);
  record_->cn = ZELKM_Strdup(commonName);
}

KeyDbLocator Contract::databaseLocator(const Loan& file, const Loan& password) const {
  KeyDbLocator fields{};
  fields.type = KEYDB_LOCATOR_KEY_DATABASE;
  fields.fileName = file;
  fields.password = password;
  return fields;
}

int Contract::open() const {
  int handle = 0;
  EXPECT_EQ(ZELKM_OpenKeyDb(Loan(given_.file), Loan(given_.password), &handle), ZELKM_OK);
  EXPECT_GT(handle, 0);
  return handle;
}

}  // namespace zel::contract
