// Columns of a file that hold what an import would post, but are not mapped to their field.
#pragma once

#include <string>
#include <vector>

#include "apps/opnimp/warnings/checked_record.h"
#include "apps/opnimp/warnings/column_survey.h"

namespace velk {

class LostColumns {
 public:
  explicit LostColumns(const CheckedFile& file);

  void check(const CheckedRecord& record, std::vector<Warning>& warnings) const;

 private:
  struct Lost {
    std::size_t column;
    std::string title;
    WarningId warning;
    std::string readAs;                  ///< what is posted in the place of its values
    std::optional<std::size_t> instead;  ///< the column of the same title that is used
  };

  void look(const CheckedFile& file, std::size_t column, const std::string& title);
  void lookInOpening(const CheckedFile& file, std::size_t column, const std::string& title);
  void lookInMaster(const CheckedFile& file, std::size_t column, const std::string& title);

  const ColumnSurvey survey_;
  std::vector<bool> dates_;       // of each column, whether its title is a usual one of dates
  std::vector<bool> references_;  // the same of references
  std::vector<Lost> lost_;
};

}  // namespace velk
