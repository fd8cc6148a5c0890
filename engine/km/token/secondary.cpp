#include "engine/km/token/secondary.h"

namespace zel::km::token {

namespace {

/** Lets go of the store when it goes, whatever has happened. */
class Hold {
 public:
  Hold(Store*& held, Store& store) : held_(held) { held_ = &store; }
  ~Hold() { held_ = nullptr; }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  Store*& held_;
};

}  // namespace

sys::Status Secondary::runChanges(const Transactions::Run& run) {
  if (!isLent()) return run();
  return loan_([&](Store& store) -> sys::Status {
    const Hold hold(held_, store);
    return store.runChanges(run);
  });
}

/** Who holds on to the store would wait for itself if it were lent once more. */
sys::Status Secondary::hold(const std::function<sys::Status(Store&)>& body) {
  return held_ != nullptr ? body(*held_) : loan_(body);
}

}  // namespace zel::km::token
