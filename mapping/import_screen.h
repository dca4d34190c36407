// What every import screen is: a preview of the file, a list of target fields, the clicks that map
// one to the other, and the buttons around them.
//
// The preview list `lv` holds one column a file column and one row a record. The mapping list holds
// one column a field; its row 1 is the mapping row (the title of the mapped file column in bold, or
// the "Not Yet" caption), rows 2 to RecordCount + 1 are the data rows. Imports read their values
// from the mapping list, not from the file.
//
// A screen states its differences as MappingRules, and by overriding the few steps that are its
// own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "mapping/file_survey.h"
#include "mapping/file_table.h"
#include "mapping/import_run.h"
#include "mapping/mapping_rules.h"
#include "platform/database.h"
#include "shared/Velk_ModOpnImp.h"
#include "ui/controls.h"
#include "ui/list_view.h"

namespace velk {

class ImportScreen : public Form {
 public:
  static constexpr std::size_t mappingRow = ImportRun::mappingRow;
  static constexpr std::size_t firstDataRow = ImportRun::firstDataRow;
  static constexpr Bounds fixedBounds{.left = 0, .top = 0, .width = 12000, .height = 8580};

  Frame FraBrowse;
  TextBox TxtFileName;
  CommandButton CmdBrowse;
  CommandButton cmdview;
  Frame FraData;
  Label Label2;
  ListView lv;
  Label Label1;
  ListView mappingList;
  CommandButton CmdClear;
  CommandButton cmdImport;
  CommandButton cmdExit;
  CommonDialog CommonDialog1;
  Menu test;
  Menu subclr;

  /// Sets the screen up and shows it, modeless. Errors are logged; what was done before one stays.
  /// Without a connection every query of the screen fails; without an icon it has the default one.
  void initForm(std::shared_ptr<Connection> myConn, std::shared_ptr<const Picture> AppIcon);

  Velk_ModOpnImp& module() const { return module_; }
  Desktop& desktop() const { return module_.desktop(); }
  Connection& connection() const { return *connection_; }

  /// The number of data rows; 0 before View.
  std::int32_t RecordCount() const { return recordCount_; }
  /// RecordCount + 1. Error 6 when that is beyond the range of the count.
  std::size_t lastDataRow() const;

  /// The import that runs on the screen, or that will: where it stands and what it says.
  ImportRun& run() { return run_; }
  std::size_t currentRow() const { return run_.currentRow(); }

  /// The fields of the mapping list, in its columns' order.
  std::span<const TargetField> fields() const { return fields_; }

  /// After a run: file name, lists and preview columns emptied, the file forgotten, View and Import
  /// disabled.
  void emptyScreen();

  /// Runs a routine of the screen under the trap that logs its screen and routine.
  template <class Routine>
  bool trapRoutine(std::string_view routine, Routine&& body) {
    return run_.trap(name() + " : " + std::string(routine) + " - ", body);
  }

  /// The run is stopped by an error, and the user told.
  void tellStop(const RuntimeError& error);

  /// Shows a file's titles and records in place of what is shown, and keeps their count. Error 6,
  /// which the user is told the reason of, when there are more than can be imported.
  void showPreview(const FileTable& table);

  /// The column of a list at a horizontal position (twips from the list's left edge, the list's
  /// scroll position counted in); empty beyond the last one.
  static std::optional<std::size_t> GetColumnUnderMouse(const ListView& list, int x);

 protected:
  ImportScreen(Velk_ModOpnImp& module, std::string_view name, std::string_view caption,
               std::string_view mappingListName, const MappingRules& rules);

  // Set-up
  void keepConnection(std::shared_ptr<Connection> myConn);
  void InitLoadColors();
  void paint() { Velk_ModOpnImp::SetColors(*this, backColors_, foreColors_); }
  /// Keeps the host's caption for "Not Yet".
  void loadNotYetCaption();
  /// Gives the mapping list these columns; they outlive the screen.
  void setFields(std::span<const TargetField> fields);

  // The steps that screens have on their own
  /// The steps of initForm between the host's two hooks.
  virtual void setUp(std::shared_ptr<Connection> myConn) = 0;
  /// Sets title, filter and the like of CommonDialog1 before it is shown.
  virtual void setUpDialog() = 0;
  /// Fills the preview from the file named in TxtFileName. False: what is shown can't be imported.
  virtual bool loadPreview();
  /// Where a window goes that was resized, or found maximised.
  virtual Bounds keptBounds(WindowState /*state*/) { return fixedBounds; }
  /// The Import button.
  virtual void cmdImport_Click() = 0;

  // Events
  void CmdBrowse_Click();
  void cmdview_Click();
  void CmdClear_Click();
  void lv_ColumnClick(std::size_t column);
  void mappingList_ColumnClick(std::size_t column);
  void mappingList_MouseUp(MouseButton button, int x);
  void subclr_Click();
  void Form_KeyDown(std::int16_t KeyCode, std::int16_t Shift) override;
  void Form_Resize() override;
  void eventFailed(const RuntimeError& error) noexcept override;

  /// Empties the preview, and what the screen remembers of the file.
  void forgetFile();

 private:
  void bindEvents();
  std::int64_t countOf(std::int64_t rows, std::int64_t nonEmptyLines) const;
  void storeRecordCount(std::int64_t count);
  /// Removes all rows of the mapping list and adds the mapping row and `dataRows` empty rows.
  void rebuildMappingList(bool notYetInFirstCell, std::size_t dataRows);
  /// Shows a file column's values under a field, and its title in bold in the mapping row.
  void mapColumn(std::size_t fileColumn, std::size_t field);
  /// Maps the file columns whose names are those of fields.
  void mapIdenticalNames();
  void mapIfNamed(std::size_t fileColumn);
  std::string nameOf(std::size_t fileColumn) const;
  void writeNotYet(std::size_t field);
  std::size_t fieldTitled(std::string_view title) const;
  void select(std::optional<std::size_t> fileColumn);
  /// Says in the lists' tooltips what to click next.
  void tellNextStep();
  void mapSelectedColumn(std::size_t clicked);
  void refuseMapping(Reason reason, std::size_t field, std::string_view message);
  template <class Survey>
  void surveyFirst(Survey survey);
  void refuseLongFile(const FileSurvey& survey);
  void refuseTooMany(std::int64_t count);
  void refuseFile(const Finding& why, const std::string& text);

  Velk_ModOpnImp& module_;
  const MappingRules& rules_;
  std::span<const TargetField> fields_;
  std::shared_ptr<Connection> connection_;
  std::unique_ptr<Command> command_;
  std::string notYet_;
  std::array<Value, 6> backColors_;
  std::array<Value, 6> foreColors_;

  std::optional<std::int64_t> fileRecords_;    // of the file viewed; empty before View
  std::optional<std::size_t> selectedColumn_;  // of the file; empty when it was used
  std::optional<std::size_t> targetColumn_;
  std::int32_t recordCount_ = 0;
  ImportRun run_{module_, mappingList, rules_.repeatsPosting};
};

}  // namespace velk
