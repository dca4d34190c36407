// The display's dots per inch, as programs find them that start from now on.
#pragma once

namespace velk {

inline constexpr int usualDotsPerInch = 96;

/// The user's setting while this lives; then it is the usual one again.
class DisplayScale {
 public:
  /// Error 57 when the setting cannot be made.
  explicit DisplayScale(int dotsPerInch);
  ~DisplayScale();
  DisplayScale(const DisplayScale&) = delete;
  DisplayScale& operator=(const DisplayScale&) = delete;
};

}  // namespace velk
