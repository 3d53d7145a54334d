#include "Values/ServiceAddresses.h"

#include <cstdlib>
#include <string>

namespace velkin {

namespace {

/// One host for each service, as in the world outside: cookies and storage must not mix. Runs of the tests
/// that go on side by side have a number each in the environment, 0 to 255, so that each has servers of its
/// own.
std::string_view at(const char* service, const char* path) {
  const char* const run = std::getenv("VELKIN_LOOPBACK");
  const auto host = std::string("127.83.") + (run != nullptr ? run : "0") + "." + service;
  // Never freed: others may look at it for as long as the process lives.
  static auto* const kept = new std::string[8];
  static int count = 0;
  return kept[count++] = "http://" + host + ":8471" + path;
}

}  // namespace

// Before all that is made when the program starts.
[[gnu::init_priority(101)]] const ServiceAddresses serviceAddresses = {
    .chatgpt = at("1", "/chat"),
    .bard = at("2", "/"),
    .bitbucket = at("3", "/"),
    .gitlab = at("4", "/"),
    .hemingway = at("5", "/"),
    .jira = at("6", "/software/jira"),
    .chatCompletions = at("7", "/v1/chat/completions"),
    .keyPage = at("7", "/account/api-keys"),
};

}  // namespace velkin
