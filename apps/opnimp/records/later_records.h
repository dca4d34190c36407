// The records of a file from one of them on, for a run that takes up where another one ended.
#pragma once

#include <memory>
#include <utility>

#include "apps/opnimp/records/input_records.h"

namespace velk {

class LaterRecords final : public InputRecords {
 public:
  /// `first` is above 0, and below the number of records.
  LaterRecords(std::unique_ptr<const InputRecords> whole, std::size_t first)
      : whole_(std::move(whole)), first_(first) {}

  const InputRecords& whole() const { return *whole_; }
  std::size_t first() const { return first_; }

  std::size_t count() const override { return whole_->count() - first_; }
  RecordPlace place(std::size_t record) const override { return whole_->place(first_ + record); }
  std::string_view placeWord() const override { return whole_->placeWord(); }
  std::vector<std::string> titles() const override { return whole_->titles(); }
  std::vector<std::string> fields(std::size_t record, std::size_t most) const override {
    return whole_->fields(first_ + record, most);
  }
  std::string refusal(const ImportKind& kind) const override { return whole_->refusal(kind); }
  std::vector<std::size_t> unreadRows() const override { return whole_->unreadRows(); }
  std::string_view bytes() const override { return whole_->bytes(); }
  std::string_view fileBytes() const override { return whole_->fileBytes(); }
  const Conversion& conversion() const override { return whole_->conversion(); }
  void write(FileSystem& files, std::string_view path,
             std::span<const std::size_t> records) const override {
    std::vector<std::size_t> shifted(records.begin(), records.end());
    for (std::size_t& record : shifted) record += first_;
    whole_->write(files, path, shifted);
  }

 private:
  std::unique_ptr<const InputRecords> whole_;
  std::size_t first_;
};

/// Null unless these are records of a file of which others stand before them.
inline const LaterRecords* asPart(const InputRecords& input) {
  return dynamic_cast<const LaterRecords*>(&input);
}

}  // namespace velk
