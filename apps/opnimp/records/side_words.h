// What people write for debit and credit, in the languages that titles are known in.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velk {

/// A value of a column that tells sides.
struct SideWord {
  std::string_view word;
  bool isCredit;
  /// A kind of document of a customer or vendor alike; only the side of an account depends on that.
  bool isDocument = false;
};

/// `letters`: small ones without accents, nothing between words. Null for any other value.
const SideWord* findSideWord(std::string_view letters);

/// D and C, S and H and the like, which say so only when a column has both and nothing else.
bool areSides(char one, char other);
/// Of a letter that is one of such a pair.
bool isCreditLetter(char letter);

/// Whether a title, by its words, is one of what tells a debit from a credit, or of one side of the
/// account: "Dr/Cr", "Soll", "Debit or Credit", "S/H-Kennzeichen".
bool isSideTitle(const std::vector<std::string>& words);

}  // namespace velk
