#include "apps/opnimp/records/side_words.h"

#include <algorithm>
#include <array>

#include "apps/opnimp/convert/title_words.h"

namespace velk {

namespace {

constexpr bool isCreditSide = true;
constexpr bool isDebitSide = false;
constexpr bool ofDocument = true;

constexpr auto sideWords = std::to_array<SideWord>({
    {"cr", isCreditSide},
    {"cred", isCreditSide},
    {"credit", isCreditSide},
    {"credito", isCreditSide},
    {"kredit", isCreditSide},
    {"haben", isCreditSide},
    {"haber", isCreditSide},
    {"avere", isCreditSide},
    {"dr", isDebitSide},
    {"deb", isDebitSide},
    {"debe", isDebitSide},
    {"debet", isDebitSide},
    {"debit", isDebitSide},
    {"debito", isDebitSide},
    {"soll", isDebitSide},
    {"dare", isDebitSide},
    {"cn", isCreditSide, ofDocument},
    {"crn", isCreditSide, ofDocument},
    {"cm", isCreditSide, ofDocument},
    {"creditnote", isCreditSide, ofDocument},
    {"creditmemo", isCreditSide, ofDocument},
    {"creditinvoice", isCreditSide, ofDocument},
    {"kreditnota", isCreditSide, ofDocument},
    {"payment", isCreditSide, ofDocument},
    {"receipt", isCreditSide, ofDocument},
    {"onaccount", isCreditSide, ofDocument},
    {"zahlung", isCreditSide, ofDocument},
    {"stornorechnung", isCreditSide, ofDocument},
    {"rechnungskorrektur", isCreditSide, ofDocument},
    {"facturarectificativa", isCreditSide, ofDocument},
    {"gutschrift", isCreditSide, ofDocument},
    {"avoir", isCreditSide, ofDocument},
    {"abono", isCreditSide, ofDocument},
    {"notadecredito", isCreditSide, ofDocument},
    {"notacredito", isCreditSide, ofDocument},
    {"notadicredito", isCreditSide, ofDocument},
    {"creditnota", isCreditSide, ofDocument},
    {"creditfactuur", isCreditSide, ofDocument},
    {"dn", isDebitSide, ofDocument},
    {"debitnote", isDebitSide, ofDocument},
    {"debitmemo", isDebitSide, ofDocument},
    {"notadedebito", isDebitSide, ofDocument},
    {"inv", isDebitSide, ofDocument},
    {"invoice", isDebitSide, ofDocument},
    {"bill", isDebitSide, ofDocument},
    {"rechnung", isDebitSide, ofDocument},
    {"facture", isDebitSide, ofDocument},
    {"factura", isDebitSide, ofDocument},
    {"fattura", isDebitSide, ofDocument},
    {"fatura", isDebitSide, ofDocument},
    {"factuur", isDebitSide, ofDocument},
});

struct LetterPair {
  char debit;
  char credit;
};
// Debit and credit, Soll and Haben, Debe and Haber, Dare and Avere.
constexpr auto letterPairs =
    std::to_array<LetterPair>({{'d', 'c'}, {'d', 'k'}, {'s', 'h'}, {'d', 'h'}, {'d', 'a'}});

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
  if (std::ranges::count(wholeTitles, lettersOfWords(words)) > 0) return true;
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
