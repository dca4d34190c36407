// The window of a list: virtual, so that it asks the model for the cells it shows, and a file of
// 32,766 records appears as fast as one of ten.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/windows/forms/control_window.h"
#include "ui/list_view.h"

namespace velk {

class ListWindow final : public ControlWindow {
 public:
  ListWindow(ListView& list, const ControlPlace& place);

  /// What the model says of columns and rows goes to the window with the next flush: while a file
  /// is viewed it says thousands of things.
  void propertyChanged(Property property) override;
  LRESULT notify(NMHDR& header) override;
  void flush() override;
  bool needsFlush() const override { return columnsChanged_ || rowsChanged_; }

 private:
  using Column = std::pair<std::string, int>;  ///< title, width in pixels

  void showColumns();
  void showColumn(std::size_t index, const Column& column);
  void showColors() const;
  void giveText(LVITEMW& item) const;
  LRESULT draw(NMLVCUSTOMDRAW& what) const;
  bool isBold(std::size_t row, std::size_t column) const;
  bool hasBold(std::size_t row) const;
  void rightClicked(const NMITEMACTIVATE& click);
  void readGeometry();
  HWND header() const;

  ListView& list_;
  HFONT bold_;
  std::vector<Column> shown_;
  bool columnsChanged_ = true;
  bool rowsChanged_ = true;
};

}  // namespace velk
