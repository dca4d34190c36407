#include "apps/opnimp/run/preview_command.h"

#include <algorithm>
#include <memory>
#include <new>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/printable.h"
#include "apps/opnimp/records/field_mapping.h"
#include "apps/opnimp/report/json_writer.h"
#include "apps/opnimp/report/report_parts.h"
#include "apps/opnimp/run/preview_connection.h"
#include "apps/opnimp/run/run_support.h"
#include "apps/opnimp/run/screen_session.h"
#include "apps/opnimp/warnings/warnings.h"

namespace velk {

namespace {

constexpr std::size_t mostRows = 10;
constexpr std::size_t mostColumnsShown = 20;
constexpr std::size_t widestCell = 24;

class Preview {
 public:
  Preview(const Arguments& arguments, const Streams& streams, const Surroundings& surroundings)
      : arguments_(arguments),
        streams_(streams),
        surroundings_(surroundings),
        progress_(streams.err, false),
        recorder_(Recorder::Mode::DryRun),
        session_(recorder_, {".", surroundings.clock, messagesTo(streams.err, progress_), false}),
        input_(readInput(arguments)) {}

  ExitStatus run() {
    try {
      session_.open(*arguments_.kind, recorder_.wrap(std::make_shared<PreviewConnection>()));
      recorder_.forgetTexts();  // that there are no colours without a database
      viewAndMap(session_, arguments_, *input_, recorder_);
      mapping_ = readMapping(session_.screen());
    } catch (const Refused& refused) {
      refusal_ = refused.what();
    }
    warnings_ = findWarnings(*input_, *arguments_.kind, mapping_,
                             civilFromDate(surroundings_.clock()).year);
    if (arguments_.json) {
      writeJson();
    } else {
      writeText();
    }
    return refusal_.empty() ? ExitStatus::Posted : ExitStatus::Refused;
  }

 private:
  const ListView& lv() const { return session_.screen().lv; }
  std::size_t shownRows() const { return std::min(mostRows, lv().rowCount()); }

  void writeText() {
    std::ostream& out = streams_.out;
    out << "File: " << printable(arguments_.file) << " ("
        << counted(input_->count(), "record", "records") << ")\n";
    writeMapping(mapping_, out);
    writeColumnsNotUsed();
    if (refusal_.empty()) writeRows();
    writeWarnings(warnings_, input_->placeWord(), out);
    if (!refusal_.empty()) out << "\nRefused: " << printable(refusal_) << '\n';
    writeAdvice();
  }

  void writeColumnsNotUsed() {
    std::string unused;
    for (std::size_t column = 0; column < lv().columnCount(); ++column) {
      const bool used = std::ranges::any_of(
          mapping_, [&](const FieldMapping& entry) { return entry.column == column; });
      if (used || column >= mostColumnsShown) continue;
      unused += (unused.empty() ? "" : ", ") + printable(lv().title(column)) + " (#" +
                std::to_string(column + 1) + ")";
    }
    if (!unused.empty()) streams_.out << "\nColumns not used: " << unused << '\n';
  }

  void writeRows() {
    const std::size_t columns = std::min(mostColumnsShown, lv().columnCount());
    std::vector<std::string> lines(shownRows() + 1, " ");
    for (std::size_t column = 0; column < columns; ++column) addColumn(column, lines);
    streams_.out << '\n';
    for (std::string& line : lines) {
      line.erase(line.find_last_not_of(' ') + 1);
      streams_.out << line << '\n';
    }
    if (lv().columnCount() > columns) {
      streams_.out << "  (the first " << columns << " of " << grouped(lv().columnCount())
                   << " columns)\n";
    }
  }

  void addColumn(std::size_t column, std::vector<std::string>& lines) const {
    std::vector<std::string> texts{cutTo(printable(lv().title(column)), widestCell)};
    for (std::size_t row = 1; row < lines.size(); ++row) {
      texts.push_back(cutTo(printable(lv().cell(row, column)), widestCell));
    }
    std::size_t width = 0;
    for (const std::string& text : texts) width = std::max(width, textWidth(text));
    for (std::size_t i = 0; i < lines.size(); ++i)
      lines[i] += " " + padRight(texts[i], width) + " ";
  }

  void writeAdvice() {
    if (mapping_.empty()) return;
    if (const std::string refusal = input_->refusal(*arguments_.kind); !refusal.empty()) {
      streams_.out << "\nAn import would be refused: " << printable(refusal) << ".\n";
    }
    const std::string unmapped = unmappedFields(mapping_, arguments_.kind->mandatory);
    if (unmapped.empty()) return;
    streams_.out << "\nAn import would be refused: no column is mapped to " << printable(unmapped)
                 << ". Rename the column, or use --map \"Field=Column\".\n";
  }

  void writeJson() {
    JsonWriter json(streams_.out);
    json.beginObject();
    json.member("command", "preview");
    json.member("kind", arguments_.kind->name);
    json.member("status",
                static_cast<int>(refusal_.empty() ? ExitStatus::Posted : ExitStatus::Refused));
    json.member("file", arguments_.file);
    json.member("refused", refusal_);
    json.member("recordCount", input_->count());
    writeMapping(mapping_, json);
    writeWarnings(warnings_, input_->placeWord(), json);
    writeJsonTable(json);
    json.endObject();
  }

  void writeJsonTable(JsonWriter& json) {
    const std::size_t columns = refusal_.empty() ? lv().columnCount() : 0;
    json.key("columns");
    json.beginArray();
    for (std::size_t column = 0; column < columns; ++column) json.text(lv().title(column));
    json.endArray();
    json.key("rows");
    json.beginArray();
    for (std::size_t row = 1; columns > 0 && row <= shownRows(); ++row) {
      json.beginArray();
      for (std::size_t column = 0; column < columns; ++column) json.text(lv().cell(row, column));
      json.endArray();
    }
    json.endArray();
  }

  const Arguments& arguments_;
  const Streams& streams_;
  const Surroundings& surroundings_;
  Progress progress_;
  Recorder recorder_;
  ScreenSession session_;
  std::unique_ptr<const InputRecords> input_;
  std::vector<FieldMapping> mapping_;
  std::vector<Warning> warnings_;
  std::string refusal_;
};

}  // namespace

ExitStatus runPreview(const Arguments& arguments, const Streams& streams,
                      const Surroundings& surroundings) {
  try {
    return Preview(arguments, streams, surroundings).run();
  } catch (const std::bad_alloc&) {
    throw CannotOpen(tooLarge(arguments.file));
  }
}

}  // namespace velk
