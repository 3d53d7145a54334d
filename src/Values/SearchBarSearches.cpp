#include "Values/SearchBarSearches.h"

#include "Values/PrettyJSON.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace velkin {

namespace {

tl::expected<SearchBarSearch, std::string> decodeSearch(const nlohmann::json& object) {
  if (!object.is_object()) return tl::unexpected<std::string>("a search is no object");
  const auto date = object.find("date");
  if (date == object.end() || !date->is_number()) return tl::unexpected<std::string>("a search has no date");
  const auto prompt = object.find("searchPrompt");
  if (prompt == object.end() || !prompt->is_string())
    return tl::unexpected<std::string>("a search has no prompt");
  SearchBarSearch search{.date = date->get<double>(), .searchPrompt = prompt->get<std::string>()};
  const auto result = object.find("resultMarkdown");
  if (result != object.end() && !result->is_null()) {
    if (!result->is_string()) return tl::unexpected<std::string>("a result is no text");
    search.resultMarkdown = result->get<std::string>();
  }
  return search;
}

}  // namespace

tl::expected<std::string, std::string> encode(const SearchBarSearches& searches) {
  auto array = nlohmann::ordered_json::array();
  for (const auto& search : searches.searches) {
    nlohmann::ordered_json object = {{"date", search.date}, {"searchPrompt", search.searchPrompt}};
    if (search.resultMarkdown) object["resultMarkdown"] = *search.resultMarkdown;
    array.push_back(std::move(object));
  }
  return prettyJSON({{"searches", std::move(array)}});
}

tl::expected<SearchBarSearches, std::string> decodeSearchBarSearches(std::string_view json) {
  const auto document = nlohmann::json::parse(json, nullptr, false);
  if (document.is_discarded()) return tl::unexpected<std::string>("the text is no JSON");
  const auto array = document.is_object() ? document.find("searches") : document.end();
  if (array == document.end() || !array->is_array())
    return tl::unexpected<std::string>("there is no array of searches");
  SearchBarSearches result;
  for (const auto& object : *array) {
    auto search = decodeSearch(object);
    if (!search) return tl::unexpected<std::string>(search.error());
    result.searches.push_back(*std::move(search));
  }
  return result;
}

bool addSearch(std::vector<SearchBarSearch>& searches, std::string_view text, std::string_view resultHtml) {
  const bool isKnown = std::any_of(searches.begin(), searches.end(),
                                   [&](const auto& search) { return search.searchPrompt == text; });
  if (isKnown) return false;
  // Equal, not at least: a longer list, which only an outside hand can have made, is left to its owner.
  if (searches.size() == searchLimit) searches.erase(searches.begin());
  SearchBarSearch search{.searchPrompt = std::string(text)};
  if (resultHtml.size() <= longestStoredResult) search.resultMarkdown = resultHtml;
  searches.push_back(std::move(search));
  // An earlier version kept results of any length.
  for (auto& kept : searches) {
    if (kept.resultMarkdown && kept.resultMarkdown->size() > longestStoredResult) kept.resultMarkdown.reset();
  }
  return true;
}

}  // namespace velkin
