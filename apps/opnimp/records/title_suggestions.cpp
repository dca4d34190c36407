#include "apps/opnimp/records/title_suggestions.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "apps/opnimp/convert/title_words.h"
#include "apps/opnimp/records/side_words.h"
#include "apps/opnimp/records/title_synonyms.h"
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
  std::string letters = lettersOfWords(words);
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

// From the most certain to the least.
constexpr std::array likenesses{sameTitle, usualName, shortened, misspelt};

struct Open {
  const FieldMapping* field;
  std::vector<Name> names;
};

struct Unused {
  std::size_t column;
  Name title;
};

/// How a column looks like a field.
struct Likeness {
  std::size_t rank = likenesses.size();  // the most certain one is 0
  std::string reason;

  bool isNone() const { return rank == likenesses.size(); }
};

Likeness likenessOf(const Open& field, const Unused& column) {
  for (std::size_t rank = 0; rank < likenesses.size(); ++rank) {
    for (const Name& name : field.names) {
      if (auto reason = likenesses[rank](column.title, name)) return {rank, std::move(*reason)};
    }
  }
  return {};
}

struct FieldColumn {
  std::size_t field;   // of the open ones
  std::size_t column;  // of the unused ones
  Likeness likeness;
};

/// Each field and each column once, those that fit best first; `all` is in the order of likeness.
std::vector<const FieldColumn*> bestPairs(const std::vector<FieldColumn>& all) {
  std::vector<const FieldColumn*> best;
  for (const FieldColumn& pair : all) {
    const bool isTaken = std::ranges::any_of(best, [&](const FieldColumn* taken) {
      return taken->field == pair.field || taken->column == pair.column;
    });
    if (!isTaken) best.push_back(&pair);
  }
  return best;
}

/// Whether the column may be meant as well as the one that the field has: it has no better use.
bool rivals(const FieldColumn& pair, const std::vector<const FieldColumn*>& best) {
  return std::ranges::none_of(best, [&](const FieldColumn* taken) {
    if (taken->field == pair.field) return taken->likeness.rank == 0;
    return taken->column == pair.column && taken->likeness.rank <= pair.likeness.rank;
  });
}

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
    // A side of the account is no field's, whatever its title is short for.
    if (title.letters.empty() || isSideTitle(title.words)) continue;
    unused.push_back({column, std::move(title)});
  }
  return unused;
}

}  // namespace

// A title that stands twice, or that the option would read otherwise, goes by its number.
std::string TitleSuggestion::option() const {
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= ' ' && c != '\x7F' &&
           std::string_view("\"'`$\\!#").find(c) == std::string_view::npos;
  };
  const bool plain = std::ranges::all_of(title, isPlain) && !isRepeated;
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

std::vector<TitleSuggestion> suggestTitles(const std::vector<FieldMapping>& mapping,
                                           const std::vector<std::string>& titles) {
  const std::vector<Open> open = openFields(mapping);
  const std::vector<Unused> unused = unusedColumns(mapping, titles);
  std::vector<FieldColumn> all;
  for (std::size_t field = 0; field < open.size(); ++field) {
    for (std::size_t column = 0; column < unused.size(); ++column) {
      Likeness likeness = likenessOf(open[field], unused[column]);
      if (!likeness.isNone()) all.push_back({field, column, std::move(likeness)});
    }
  }
  std::ranges::stable_sort(all, {}, [](const FieldColumn& pair) { return pair.likeness.rank; });
  const std::vector<const FieldColumn*> best = bestPairs(all);
  std::vector<const FieldColumn*> chosen = best;
  for (const FieldColumn& pair : all) {
    if (std::ranges::count(best, &pair) == 0 && rivals(pair, best)) chosen.push_back(&pair);
  }
  std::ranges::stable_sort(chosen, {}, &FieldColumn::field);
  std::vector<TitleSuggestion> found;
  for (const FieldColumn* pair : chosen) {
    const std::string& title = titles[unused[pair->column].column];
    found.push_back({open[pair->field].field->field, unused[pair->column].column,
                     std::string(trim(title)), std::ranges::count(titles, title) > 1,
                     pair->likeness.reason,
                     std::ranges::count(chosen, pair->field, &FieldColumn::field) > 1});
  }
  return found;
}

}  // namespace velk
