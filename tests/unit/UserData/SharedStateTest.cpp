#include "UserData/SharedState.h"

#include <vector>

#include <gtest/gtest.h>

namespace velkin {
namespace {

class SharedStateTest : public testing::Test {
 protected:
  std::vector<platform::Published<bool>*> fields() {
    return {&state.showToolbar,    &state.isSearching, &state.isBarding,
            &state.isBitBucketing, &state.isChatting,  &state.isGitLabing,
            &state.isHemingwaying, &state.isJiring,    &state.isMarking};
  }
  SharedState state;
};

TEST_F(SharedStateTest, StartsWithTheToolbarAlone) {
  for (const auto* field : fields()) EXPECT_EQ(field->get(), field == &state.showToolbar);
}

TEST_F(SharedStateTest, AChangeOfAFieldIsToldToItsOwnObserversAndToThoseOfTheWhole) {
  for (auto* changed : fields()) {
    int whole = 0;
    const auto watched = state.subscribe([&] { ++whole; });
    std::vector<int> told(fields().size());
    std::vector<platform::Connection> subscriptions;
    for (std::size_t i = 0; i < told.size(); ++i) {
      subscriptions.push_back(fields()[i]->subscribe([&told, i] { ++told[i]; }));
    }
    changed->set(!changed->get());
    EXPECT_EQ(whole, 1);
    for (std::size_t i = 0; i < told.size(); ++i) EXPECT_EQ(told[i], fields()[i] == changed ? 1 : 0);
  }
}

TEST_F(SharedStateTest, ASetThatChangesNothingTellsNobody) {
  int whole = 0;
  const auto watched = state.subscribe([&] { ++whole; });
  for (auto* field : fields()) field->set(field->get());
  EXPECT_EQ(whole, 0);
}

}  // namespace
}  // namespace velkin
