// A JSON document that the runner wrote.
#pragma once

#include <doctest/doctest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <string>

namespace velk {

class Json {
 public:
  /// The test fails unless this is one document in valid UTF-8 that gives no key twice.
  explicit Json(const std::string& text) : document_(nlohmann::ordered_json::parse(text)) {
    REQUIRE(withoutControls(document_.dump() + "\n") == withoutControls(text));
  }

  /// What is found at a path such as "records[0].outcome": a text as it is, all else as JSON has
  /// it.
  std::string at(const std::string& path) const {
    std::string pointer = "/";
    for (const char c : path) {
      if (c != ']') pointer += c == '.' || c == '[' ? '/' : c;
    }
    const auto& found = document_.at(nlohmann::ordered_json::json_pointer(pointer));
    return found.is_string() ? found.get<std::string>() : found.dump();
  }

  /// The outcomes of all records, blanks between.
  std::string outcomes() const {
    std::string all;
    for (const auto& record : document_.at("records")) {
      all += (all.empty() ? "" : " ") + record.at("outcome").get<std::string>();
    }
    return all;
  }

 private:
  /// JSON lets DEL and the C1 controls be, which the runner writes as escapes: both are left out.
  static std::string withoutControls(const std::string& text) {
    static const std::regex control(R"(\\u00(?:7f|[89][0-9a-f])|\x7F|\xC2[\x80-\x9F])");
    return std::regex_replace(text, control, "");
  }

  nlohmann::ordered_json document_;
};

}  // namespace velk
