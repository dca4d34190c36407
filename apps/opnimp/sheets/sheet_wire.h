// Sheets as bytes, from the process that reads a workbook to the one that wants it.
//
// A sheet is 'S', a byte that is 1 if it is hidden, and its name; a cell 'C', its kind, row,
// column, value and text, its kind with the highest bit if it is hidden; 'E' ends the whole; 'F'
// and a sentence say why there is none. Texts have their length in front, and numbers the lowest
// byte first.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "apps/opnimp/sheets/sheet_set.h"
#include "platform/spreadsheet/sheet_sink.h"

namespace velk {

class SheetWriter final : public SheetSink {
 public:
  explicit SheetWriter(std::function<void(std::string_view)> handBack)
      : handBack_(std::move(handBack)) {}

  void sheet(std::string_view name, bool isHidden) override;
  void cell(const SheetCell& cell) override;
  void finish();
  void refuse(std::string_view why);

 private:
  void append(std::string_view text);
  void flush();

  std::function<void(std::string_view)> handBack_;
  std::string bytes_;
};

/// The process may hand back anything. Error 321 for what is no sheets, also for a refusal.
SheetSet readWire(std::string bytes);

}  // namespace velk
