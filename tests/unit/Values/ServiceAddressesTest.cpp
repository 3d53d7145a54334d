#include "Platform/URL.h"
#include "Values/ServiceAddresses.h"
#include "gtest/gtest.h"

namespace velkin {
namespace {

TEST(ServiceAddressesTest, everyPublicAddressParsesAndIsEncrypted) {
  const auto& all = serviceAddresses;
  for (const auto address :
       {all.chatgpt, all.bard, all.bitbucket, all.gitlab, all.hemingway, all.jira, all.chatCompletions}) {
    const auto url = platform::URL::parse(address);
    ASSERT_TRUE(url) << address;
    EXPECT_EQ(url->scheme(), "https");
  }
}

TEST(ServiceAddressesTest, thePathsThatTheServicesAreKnownBy) {
  EXPECT_EQ(platform::URL::parse(serviceAddresses.chatgpt)->path(), "/chat");
  EXPECT_EQ(platform::URL::parse(serviceAddresses.jira)->path(), "/software/jira");
  EXPECT_EQ(platform::URL::parse(serviceAddresses.chatCompletions)->path(), "/v1/chat/completions");
}

}  // namespace
}  // namespace velkin
