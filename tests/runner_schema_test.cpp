// What the runner prints with --json is described by docs/json-reports.schema.json, all of it.
#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/support/runner.h"

using namespace velk;

namespace {

using Document = nlohmann::ordered_json;

/// As much of JSON Schema as that file uses.
class Schema {
 public:
  explicit Schema(Document schema) : schema_(std::move(schema)) {}

  /// Where the value does not fit, and why; empty if it does.
  std::string misfit(const Document& value, const Document& rule, const std::string& at) const {
    if (rule.contains("$ref")) {
      const std::string name = rule["$ref"];
      return misfit(value, schema_.at(Document::json_pointer(name.substr(1))), at);
    }
    if (rule.contains("anyOf")) return misfitOfAny(value, rule["anyOf"], at);
    if (rule.contains("type") && !isOfType(value, rule["type"])) return at + " is of another type";
    if (rule.contains("enum") && !has(rule["enum"], value)) return at + " is none of the enum";
    if (value.is_array() && rule.contains("items")) {
      for (std::size_t i = 0; i < value.size(); ++i) {
        const std::string why = misfit(value[i], rule["items"], at + "/" + std::to_string(i));
        if (!why.empty()) return why;
      }
    }
    return value.is_object() ? misfitOfObject(value, rule, at) : "";
  }
  std::string misfit(const std::string& text) const {
    return misfit(Document::parse(text), schema_, "");
  }

 private:
  static bool has(const Document& list, const Document& value) {
    return std::ranges::find(list, value) != list.end();
  }

  static bool isOfType(const Document& value, const Document& type) {
    if (type.is_array()) {
      return std::ranges::any_of(type, [&](const Document& t) { return isOfType(value, t); });
    }
    if (type == "integer") return value.is_number_integer();
    return type == std::string(value.type_name());
  }

  /// The misfit of the one that comes furthest.
  std::string misfitOfAny(const Document& value, const Document& rules,
                          const std::string& at) const {
    std::string nearest;
    for (const Document& rule : rules) {
      std::string why = misfit(value, rule, at);
      if (why.empty()) return {};
      if (why.size() >= nearest.size()) nearest = std::move(why);
    }
    return nearest;
  }

  std::string misfitOfObject(const Document& value, const Document& rule,
                             const std::string& at) const {
    const Document none = Document::object();
    const Document& properties = rule.contains("properties") ? rule["properties"] : none;
    for (const auto& required : rule.value("required", Document::array())) {
      if (!value.contains(required.get<std::string>())) return at + " has no " + required.dump();
    }
    const Document others = rule.value("additionalProperties", Document(true));
    for (const auto& [key, item] : value.items()) {
      const std::string place = at + "/" + key;
      if (!properties.contains(key) && others == false) return place + " is not described";
      const Document& itemRule = properties.contains(key) ? properties[key] : others;
      const std::string why = itemRule.is_object() ? misfit(item, itemRule, place) : "";
      if (!why.empty()) return why;
    }
    return {};
  }

  Document schema_;
};

}  // namespace

TEST_CASE("JSON reports are as their schema says") {
  std::ifstream file(OPNIMP_SOURCE_DIR "/docs/json-reports.schema.json");
  const Schema schema(Document::parse(file));
  RunnerWorld world;
  const std::string odd = world.folder.write(
      "odd.csv",
      "Customer ID;Cust Name;Date;Bill Amount;Balance\nC001;a;1/13/08;1,5;1\nC999;b;;2;x\n");
  const std::string bankFile =
      world.folder.write("b.csv", std::string(bankTitles) + "\r\nB,B,1,x\r\n");
  const std::string rejects = world.folder.path("r.csv");
  const auto import = [&](const std::string& kind, const std::string& path,
                          std::vector<std::string> more) {
    more.insert(more.begin(), {"import", kind, path, "--json", "--database", world.database(),
                               "--app-folder", world.folder.path("")});
    return world.run(more);
  };
  const Ran rows[] = {
      import(world.kind, odd, {"--rejects", rejects}),
      import(world.kind, odd, {"--accept", "all", "--rejects", rejects}),
      import(world.kind, odd, {"--accept", "all", "--again", "--dry-run"}),
      import("bank-branch", bankFile, {}),
      import("salesman", "samples/none.xls", {}),
      import(world.kind, odd, {"--frobnicate"}),
      world.run({"preview", world.kind, odd, "--json", "--database", world.database()}),
      world.run({"preview", world.kind, bankFile, "--json"}),
      world.run({"convert", world.kind, odd, world.folder.path("o.csv"), "--json"}),
      world.run({"convert", world.kind, odd, "-", "--decimal", "point", "--json"}),
      world.run({"report", "1", "--json"}),
  };
  for (const Ran& ran : rows) {
    const std::string& text = ran.out.starts_with("{") ? ran.out : ran.err;
    CAPTURE(text.substr(0, 200));
    CHECK(schema.misfit(text) == "");
  }
  // It is strict.
  for (const char* wrong :
       {R"({"status":6,"error":"x"})", R"({"status":3})", R"({"status":3,"error":"x","more":1})",
        R"({"status":3,"error":null})"}) {
    CHECK(schema.misfit(wrong) != "");
  }
}
