#include "engine/km/token/plan.h"

namespace zel::km::token {

namespace {

/** What each action changes in a view. */
struct Follower {
  TokenView& view;

  void operator()(const CreateObject& made) const { view.add(made.object); }
  void operator()(const SetAttribute& set) const { view.set(set.object, set.type, set.value); }
  void operator()(const RemoveObject& removed) const { view.remove(removed.object); }
  void operator()(const RestoreKey& kept) const { view.restoreKey(kept.privateKey); }
  void operator()(const UseNewKey& used) const { view.useNewKey(used.privateKey); }
};

}  // namespace

void follow(TokenView& view, const Action& action) { std::visit(Follower{view}, action); }

}  // namespace zel::km::token
