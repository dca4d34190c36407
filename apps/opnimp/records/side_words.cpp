#include "apps/opnimp/records/side_words.h"

#include <algorithm>
#include <array>

#include "apps/opnimp/records/title_words.h"

namespace velk {

namespace {

constexpr bool credit = true;
constexpr bool debit = false;
constexpr bool document = true;

constexpr auto sideWords = std::to_array<SideWord>({
    {"cr", credit},
    {"cred", credit},
    {"credit", credit},
    {"credito", credit},
    {"haben", credit},
    {"haber", credit},
    {"avere", credit},
    {"dr", debit},
    {"deb", debit},
    {"debe", debit},
    {"debet", debit},
    {"debit", debit},
    {"debito", debit},
    {"soll", debit},
    {"dare", debit},
    {"cn", credit, document},
    {"crn", credit, document},
    {"cm", credit, document},
    {"creditnote", credit, document},
    {"creditmemo", credit, document},
    {"creditinvoice", credit, document},
    {"gutschrift", credit, document},
    {"avoir", credit, document},
    {"abono", credit, document},
    {"notadecredito", credit, document},
    {"notacredito", credit, document},
    {"notadicredito", credit, document},
    {"creditnota", credit, document},
    {"creditfactuur", credit, document},
    {"dn", debit, document},
    {"debitnote", debit, document},
    {"debitmemo", debit, document},
    {"notadedebito", debit, document},
    {"inv", debit, document},
    {"invoice", debit, document},
    {"bill", debit, document},
    {"rechnung", debit, document},
    {"facture", debit, document},
    {"factura", debit, document},
    {"fattura", debit, document},
    {"fatura", debit, document},
    {"factuur", debit, document},
});

struct LetterPair {
  char debit;
  char credit;
};
// Debit and credit, Soll and Haben, Debe and Haber, Dare and Avere.
constexpr auto letterPairs =
    std::to_array<LetterPair>({{'d', 'c'}, {'s', 'h'}, {'d', 'h'}, {'d', 'a'}});

/// Of titles that are nothing else, their words joined.
constexpr auto wholeTitles = std::to_array<std::string_view>(
    {"balancetype", "cd", "crdr", "dc", "drcr", "sh", "shkz", "side", "sign"});
/// What may stand beside a side in a title.
constexpr auto companions =
    std::to_array<std::string_view>({"crdr", "dc", "drcr", "flag", "ind", "indicator",
                                     "kennzeichen", "kz", "or", "sh", "side", "sign", "type"});

bool namesSide(const std::string& word) {
  const SideWord* const side = findSideWord(word);
  return side != nullptr && !side->isDocument;
}

/// "s", "h", "kennzeichen" is "sh", "kennzeichen".
std::vector<std::string> withLettersJoined(const std::vector<std::string>& words) {
  std::vector<std::string> joinedWords;
  bool isLetter = false;
  for (const std::string& word : words) {
    if (isLetter && word.size() == 1) {
      joinedWords.back() += word;
    } else {
      joinedWords.push_back(word);
    }
    isLetter = word.size() == 1;
  }
  return joinedWords;
}

}  // namespace

const SideWord* findSideWord(std::string_view letters) {
  const auto* const found = std::ranges::find(sideWords, letters, &SideWord::word);
  return found == sideWords.end() ? nullptr : found;
}

bool areSides(char one, char other) {
  return std::ranges::any_of(letterPairs, [&](const LetterPair& pair) {
    return (one == pair.debit && other == pair.credit) ||
           (one == pair.credit && other == pair.debit);
  });
}

bool isCreditLetter(char letter) {
  return std::ranges::count(letterPairs, letter, &LetterPair::credit) > 0;
}

bool isSideTitle(const std::vector<std::string>& words) {
  if (std::ranges::count(wholeTitles, joined(words)) > 0) return true;
  const std::vector<std::string> parts = withLettersJoined(words);
  const auto isCompanion = [](const std::string& word) {
    return std::ranges::count(companions, word) > 0;
  };
  const auto tells = [](const std::string& word) {
    return namesSide(word) || std::ranges::count(wholeTitles, word) > 0;
  };
  return std::ranges::any_of(parts, tells) && std::ranges::all_of(parts, [&](const auto& word) {
           return tells(word) || isCompanion(word);
         });
}

}  // namespace velk
