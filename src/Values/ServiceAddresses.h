#pragma once

#include <string_view>

namespace velkin {

/// The addresses of the outside services: the one place where they stand. A program links exactly one of the
/// two sources, `ServiceAddressesPublic.cpp` or, to be tried out with no network,
/// `ServiceAddressesLoopback.cpp`.
struct ServiceAddresses {
  std::string_view chatgpt;
  std::string_view bard;
  std::string_view bitbucket;
  std::string_view gitlab;
  std::string_view hemingway;
  std::string_view jira;
  std::string_view chatCompletions;
  /// Where the provider of the completions has its users make keys.
  std::string_view keyPage;
};

extern const ServiceAddresses serviceAddresses;

}  // namespace velkin
