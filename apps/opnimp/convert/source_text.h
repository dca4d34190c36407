// The text of a file as it was saved: its bytes, and the encoding that they are in.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/cli/convert_options.h"
#include "apps/opnimp/convert/assumption.h"

namespace velk {

class SourceText {
 public:
  /// The bytes live as long. Raises UsageError for an encoding that nobody knows.
  SourceText(std::string_view bytes, const ConvertOptions& options);
  /// A text of no file: UTF-8, that lives as long.
  explicit SourceText(std::string_view text) : text_(text), utf8_(true) {}
  SourceText(const SourceText&) = delete;
  SourceText& operator=(const SourceText&) = delete;

  /// Without its mark.
  std::string_view text() const { return text_; }
  /// Else it is in windows-1252.
  bool isUtf8() const { return utf8_; }
  /// The bytes are what the screens take for this text.
  bool isCanonical() const { return canonical_; }
  /// Empty for a text of ASCII, in which nothing had to be found out.
  const std::optional<Assumption>& assumption() const { return assumption_; }
  /// Why the encoding is not sure; empty: it is.
  const std::string& refusal() const { return refusal_; }
  /// Options that decide it.
  const std::vector<std::string>& choices() const { return choices_; }

 private:
  bool takeMarked(std::string_view bytes, const std::string& wanted);
  bool takeWide(std::string_view bytes);
  void takeNamed(std::string_view bytes, const ConvertOptions& options);
  void doubtNamed(std::string_view bytes, const std::string& name);
  void takeFound(std::string_view bytes);
  void doubtFound(std::string_view bytes);
  void decode(std::string_view bytes, std::string_view encoding);
  void assume(std::string_view encoding, std::string reason);

  std::string decoded_;  // unless the bytes are the text
  std::string_view text_;
  bool utf8_ = false;
  bool canonical_ = false;
  std::optional<Assumption> assumption_;
  std::string refusal_;
  std::vector<std::string> choices_;
};

/// The number of the line, from 1, that a place in a text is in.
std::size_t lineAt(std::string_view text, std::size_t offset);

}  // namespace velk
