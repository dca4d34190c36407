#include "apps/opnimp/convert/encoding_rank.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "apps/opnimp/convert/word_cost.h"
#include "base/text.h"
#include "platform/native/named_encodings.h"

namespace velk {

namespace {

struct Usual {
  const char* name;
  unsigned rarity;  // few files are in it
};
/// The most usual of its letters first.
constexpr Usual usual[] = {{"windows-1252", 0}, {"windows-1250", 0}, {"windows-1254", 0},
                           {"windows-1257", 0}, {"windows-1251", 0}, {"windows-1253", 0},
                           {"ISO-8859-2", 2},   {"ISO-8859-15", 2},  {"IBM850", 5},
                           {"IBM852", 5},       {"IBM857", 5},       {"IBM775", 5},
                           {"IBM866", 5},       {"KOI8-R", 5}};

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t end; (end = text.find('\n')) != std::string_view::npos;
       text.remove_prefix(end + 1)) {
    lines.emplace_back(text.substr(0, end));
  }
  return lines;
}

/// What words cost as one encoding or another has them.
class KnownCosts {
 public:
  /// Most words of a file are in one language, whichever it is.
  unsigned of(const std::vector<std::string>& words) {
    constexpr unsigned otherLanguage = 4;
    std::vector<unsigned> sums;
    for (const std::string& word : words) {
      const std::vector<unsigned>& costs = costsOf(word);
      const unsigned most = std::ranges::min(costs) + otherLanguage;
      sums.resize(costs.size());
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += std::min(costs[i], most);
    }
    return sums.empty() ? 0 : std::ranges::min(sums);
  }

 private:
  const std::vector<unsigned>& costsOf(const std::string& word) {
    const auto [known, isNew] = costs_.try_emplace(word);
    if (isNew) known->second = cost_.of(toUtf16(word));
    return known->second;
  }

  WordCost cost_;
  std::map<std::string, std::vector<unsigned>> costs_;
};

}  // namespace

std::vector<RankedEncoding> rankEncodings(const std::vector<std::string_view>& words) {
  std::string lines;
  for (const std::string_view word : words) lines.append(word).append("\n");
  KnownCosts costs;
  std::vector<RankedEncoding> ranked;
  for (const Usual& encoding : usual) {
    if (!knowsEncoding(encoding.name)) continue;
    std::vector<std::string> read = linesOf(decodeNamed(encoding.name, lines));
    const auto isSame = [&](const RankedEncoding& other) { return other.words == read; };
    if (read.size() != words.size() || std::ranges::any_of(ranked, isSame)) continue;
    const unsigned cost = encoding.rarity + costs.of(read);
    ranked.push_back({encoding.name, cost, std::move(read)});
  }
  std::ranges::stable_sort(ranked, {}, &RankedEncoding::cost);
  return ranked;
}

}  // namespace velk
