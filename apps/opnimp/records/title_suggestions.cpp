#include "apps/opnimp/records/title_suggestions.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "apps/opnimp/records/title_synonyms.h"
#include "apps/opnimp/records/title_words.h"
#include "base/text.h"
#include "shared/csv_text.h"

namespace velk {

namespace {

/// A hostile header may have thousands of titles.
constexpr std::size_t mostColumns = 200;

struct Name {
  std::vector<std::string> words;
  std::string letters;
  std::string_view language;  // empty: it is the field's own title
};

Name nameOf(std::string_view title, std::string_view language) {
  std::vector<std::string> words = wordsOf(title);
  std::string letters = joined(words);
  return {std::move(words), std::move(letters), language};
}

bool lists(std::string_view list, std::string_view item) {
  return std::ranges::count(splitLine(list, QuotedComma::Keep), item) > 0;
}

/// Its own title first. None of a field that nobody maps.
std::vector<Name> namesOf(const std::string& field) {
  std::vector<Name> names;
  for (const Synonyms& row : synonyms()) {
    if (!lists(row.fields, field)) continue;
    for (const std::string& name : splitLine(row.names, QuotedComma::Keep)) {
      names.push_back(nameOf(name, row.language));
    }
  }
  if (!names.empty()) names.insert(names.begin(), nameOf(field, {}));
  return names;
}

std::string ofLanguage(const Name& name) {
  return name.language.empty() || name.language == "English" ? ""
                                                             : " in " + std::string(name.language);
}

std::optional<std::string> sameTitle(const Name& title, const Name& name) {
  if (!name.language.empty() || title.letters != name.letters) return std::nullopt;
  return "the same letters";
}

std::optional<std::string> usualName(const Name& title, const Name& name) {
  if (title.letters != name.letters) return std::nullopt;
  return "a usual name for it" + ofLanguage(name);
}

std::optional<std::string> shortened(const Name& title, const Name& name) {
  // Two letters of one word shorten too many.
  constexpr std::size_t shortest = 3;
  if (title.letters.size() < shortest || !abbreviates(title.words, name.words)) {
    return std::nullopt;
  }
  return name.language.empty() ? "the same words, shortened"
                               : "a usual name for it" + ofLanguage(name) + ", shortened";
}

std::optional<std::string> misspelt(const Name& title, const Name& name) {
  // Other short words differ in a letter, too.
  constexpr std::size_t shortest = 5;
  constexpr std::size_t longName = 12;
  if (title.letters.size() < shortest || name.letters.size() < shortest) return std::nullopt;
  const std::size_t most = name.letters.size() < longName ? 1 : 2;
  const std::size_t distance = editDistance(title.letters, name.letters, most);
  if (distance > most) return std::nullopt;
  const std::string letters = distance == 1 ? "a letter" : "two letters";
  return name.language.empty() ? letters + " apart"
                               : letters + " from a usual name for it" + ofLanguage(name);
}

struct Open {
  const FieldMapping* field;
  std::vector<Name> names;
};

struct Unused {
  std::size_t column;
  Name title;
};

std::vector<Open> openFields(const std::vector<FieldMapping>& mapping) {
  std::vector<Open> open;
  for (const FieldMapping& entry : mapping) {
    if (!entry.column) open.push_back({&entry, namesOf(entry.field)});
  }
  return open;
}

std::vector<Unused> unusedColumns(const std::vector<FieldMapping>& mapping,
                                  const std::vector<std::string>& titles) {
  std::vector<Unused> unused;
  for (std::size_t column = 0; column < std::min(titles.size(), mostColumns); ++column) {
    if (std::ranges::count(mapping, column, &FieldMapping::column) > 0) continue;
    Name title = nameOf(titles[column], {});
    if (!title.letters.empty()) unused.push_back({column, std::move(title)});
  }
  return unused;
}

}  // namespace

// A title that stands twice, or that the option would read otherwise, goes by its number.
std::string TitleSuggestion::option() const {
  const bool plain = title.find_first_of("\"'`$\\!\n\r#") == std::string::npos && !isRepeated;
  return field + "=" + (plain ? title : "#" + std::to_string(column + 1));
}

std::vector<bool> usualTitles(const std::string& field, const std::vector<std::string>& titles) {
  const std::vector<Name> names = namesOf(field);
  std::vector<bool> usual(titles.size());
  for (std::size_t column = 0; column < std::min(titles.size(), mostColumns); ++column) {
    const Name title = nameOf(titles[column], {});
    usual[column] = std::ranges::any_of(names, [&](const Name& name) {
      return !title.letters.empty() &&
             (title.letters == name.letters || (name.words.size() > 1 && shortened(title, name)));
    });
  }
  return usual;
}

// From the most certain likeness to the least, so that a column goes to the field that it fits
// best.
std::vector<TitleSuggestion> suggestTitles(const std::vector<FieldMapping>& mapping,
                                           const std::vector<std::string>& titles) {
  std::vector<Open> open = openFields(mapping);
  std::vector<Unused> unused = unusedColumns(mapping, titles);
  std::vector<TitleSuggestion> found;
  for (const auto likeness : {sameTitle, usualName, shortened, misspelt}) {
    std::erase_if(open, [&](const Open& field) {
      for (const Name& name : field.names) {
        for (auto column = unused.begin(); column != unused.end(); ++column) {
          const auto reason = likeness(column->title, name);
          if (!reason) continue;
          const std::string title(trim(titles[column->column]));
          found.push_back({field.field->field, column->column, title,
                           std::ranges::count(titles, titles[column->column]) > 1, *reason});
          unused.erase(column);
          return true;
        }
      }
      return false;
    });
  }
  std::ranges::sort(found, {}, [&](const TitleSuggestion& suggestion) {
    return std::ranges::find(mapping, suggestion.field, &FieldMapping::field) - mapping.begin();
  });
  return found;
}

}  // namespace velk
