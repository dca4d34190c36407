// A JSON document that the runner wrote.
#pragma once

#include <doctest/doctest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "apps/opnimp/report/json_document.h"

namespace velk {

class JsonValue {
 public:
  /// The test fails unless this is one document in valid UTF-8 that gives no key twice.
  explicit JsonValue(const std::string& text) : document_(nlohmann::ordered_json::parse(text)) {
    REQUIRE(textOf(document_) + "\n" == text);
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
  nlohmann::ordered_json document_;
};

}  // namespace velk
