#include "apps/opnimp/report/json_document.h"

#include <nlohmann/json.hpp>

#include "base/text.h"

namespace velk {

namespace {

// The library replaces a cut-off sequence of bytes as a whole; all other output of this program
// replaces each of its bytes, and names of files have to look alike in both.
void makeValid(Json& json) {
  if (json.is_string()) {
    auto& text = json.get_ref<std::string&>();
    if (!isAscii(text)) text = toUtf8(toUtf16(text));
  } else if (json.is_structured()) {
    for (Json& item : json) makeValid(item);
  }
}

}  // namespace

Json orNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json mappingJson(const std::vector<FieldMapping>& mapping) {
  Json list = Json::array();
  for (const FieldMapping& entry : mapping) {
    Json& added = list.emplace_back(Json{{"field", entry.field}, {"column", nullptr}});
    if (!entry.column) continue;
    // From 1, as --map counts them.
    added["column"] = *entry.column + 1;
    added["title"] = entry.title;
  }
  return list;
}

Json suggestionsJson(const std::vector<TitleSuggestion>& suggestions) {
  Json list = Json::array();
  for (const TitleSuggestion& suggestion : suggestions) {
    list.push_back({{"field", suggestion.field},
                    {"column", suggestion.column + 1},
                    {"title", suggestion.title},
                    {"reason", suggestion.reason},
                    {"doubtful", suggestion.isDoubtful},
                    {"map", suggestion.option()}});
  }
  return list;
}

Json warningsJson(const std::vector<Warning>& warnings, std::string_view placeWord) {
  Json list = Json::array();
  for (const Warning& warning : warnings) {
    Json readings = Json::array();
    for (const Misreading& reading : warning.readings) {
      readings.push_back({{"record", reading.record + 1},
                          {std::string(placeWord), reading.line},
                          {"field", orNull(reading.field)},
                          {"text", reading.text},
                          {"readAs", reading.effect()}});
    }
    list.push_back({{"code", warning.code()},
                    {"harmful", warning.harmful()},
                    {"text", warning.text()},
                    {"count", warning.count},
                    {std::string(placeWord) + "s", warning.lines},
                    {"fields", warning.fields},
                    {"readings", std::move(readings)}});
  }
  return list;
}

// JSON lets them pass, but a terminal takes them for commands, as it takes ESC.
Json assumedJson(const std::vector<Assumption>& assumptions) {
  Json list = Json::array();
  for (const Assumption& assumption : assumptions) {
    list.push_back({{"what", assumption.what},
                    {"value", assumption.value},
                    {"reason", assumption.reason},
                    {"option", orNull(assumption.option)}});
  }
  return list;
}

std::string textOf(Json json) {
  makeValid(json);
  const std::string plain = json.dump();
  std::string text;
  text.reserve(plain.size());
  for (std::size_t i = 0; i < plain.size(); ++i) {
    const bool isC1 = plain[i] == '\xC2' && static_cast<unsigned char>(plain[i + 1]) < 0xA0;
    if (isC1) {
      constexpr std::string_view digits = "0123456789abcdef";
      const auto unit = static_cast<unsigned char>(plain[++i]);
      text.append("\\u00") += digits[unit >> 4U];
      text += digits[unit & 0xFU];
    } else if (plain[i] == '\x7F') {
      text += "\\u007f";
    } else {
      text += plain[i];
    }
  }
  return text;
}

void writeErrorDocument(ExitStatus status, const std::string& text, std::ostream& out) {
  out << textOf({{"status", status}, {"error", text}}) << '\n';
}

}  // namespace velk
