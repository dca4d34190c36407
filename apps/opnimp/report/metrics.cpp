#include "apps/opnimp/report/metrics.h"

#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <system_error>
#include <utility>

#include "apps/opnimp/cli/failures.h"
#include "apps/opnimp/cli/program_version.h"
#include "apps/opnimp/records/file_bytes.h"
#include "base/errors.h"
#include "base/text.h"
#include "platform/native/native_files.h"
#include "platform/utf8_path.h"

namespace velk {

namespace {

using Labels = std::vector<std::pair<std::string_view, std::string>>;

std::string numeral(auto number) {
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.begin(), digits.end(), number).ptr};
}

/// Without an exponent.
std::string plainNumeral(double number) {
  std::array<char, 32> digits{};
  return {digits.data(),
          std::to_chars(digits.begin(), digits.end(), number, std::chars_format::fixed).ptr};
}

/// In valid UTF-8, with the three characters escaped that would end a value or a line.
std::string escaped(std::string_view value) {
  std::string text;
  for (const char c : toUtf8(toUtf16(value))) {
    if (c == '\\' || c == '"') text += '\\';
    text += c == '\n' ? "\\n" : std::string(1, c);
  }
  return text;
}

class MetricsText {
 public:
  /// Begins what follows under this name.
  void family(std::string_view name, std::string_view type, std::string_view unit,
              std::string_view help) {
    name_ = name;
    line({"# TYPE ", name, " ", type});
    if (!unit.empty()) line({"# UNIT ", name, " ", unit});
    line({"# HELP ", name, " ", help});
  }

  /// `suffix`: what the type adds to the name.
  void sample(std::string_view suffix, const Labels& labels, auto value) {
    std::string all;
    for (const auto& [name, text] : labels) {
      all.append(all.empty() ? "" : ",").append(name).append("=\"").append(escaped(text)) += '"';
    }
    if (!all.empty()) all = "{" + all + "}";
    line({name_, suffix, all, " ", numeral(value)});
  }

  std::string ended() && {
    line({"# EOF"});
    return std::move(text_);
  }

 private:
  void line(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) text_ += part;
    text_ += '\n';
  }

  std::string text_;
  std::string name_;
};

void addCall(MetricsText& text, const FilesResult& call, ExitStatus status) {
  const ImportResult& first = *call.files().front();
  text.family("opnimp_call", "info", "", "What the last call was.");
  text.sample("_info",
              {{"version", std::string(programVersion)},
               {"kind", std::string(first.arguments.kind->name)},
               {"database", first.database},
               {"dry_run", first.isDryRun() ? "true" : "false"}},
              1);
  text.family("opnimp_exit_status", "gauge", "", "Exit status of the last call.");
  text.sample("", {}, static_cast<int>(status));
  text.family("opnimp_end_time_seconds", "gauge", "seconds", "When it ended, since 1970.");
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  text.sample("", {}, std::chrono::duration_cast<std::chrono::seconds>(now).count());
}

/// Adds what `get` tells of each file.
template <class Get>
void addFiles(MetricsText& text, const FilesResult& call, std::string_view name,
              std::string_view unit, std::string_view help, Get get) {
  text.family(name, "gauge", unit, help);
  for (const ImportResult* file : call.files()) {
    text.sample("", {{"file", file->arguments.file}}, get(*file));
  }
}

void addRecords(MetricsText& text, const FilesResult& call) {
  text.family("opnimp_records", "gauge", "", "Records by what became of them.");
  for (const ImportResult* file : call.files()) {
    for (std::size_t i = 0; i < outcomeCount; ++i) {
      const auto outcome = static_cast<Outcome>(i);
      text.sample("",
                  {{"file", file->arguments.file}, {"outcome", std::string(outcomeCode(outcome))}},
                  file->account.count(outcome));
    }
  }
}

void addCounts(MetricsText& text, const FilesResult& call) {
  text.family("opnimp_calls", "gauge", "", "Calls of the database by kind and how they ended.");
  for (const ImportResult* file : call.files()) {
    for (std::size_t kind = 0; kind < callKindCount; ++kind) {
      for (std::size_t result = 0; result < callResultCount; ++result) {
        text.sample("",
                    {{"file", file->arguments.file},
                     {"kind", std::string(codeOf(static_cast<CallKind>(kind)))},
                     {"result", std::string(codeOf(static_cast<CallResult>(result)))}},
                    file->calls.kinds[kind].results[result]);
      }
    }
  }
}

void addTimes(MetricsText& text, Labels labels, const CallTimes& times) {
  std::size_t below = 0;
  labels.emplace_back("le", "");
  for (std::size_t i = 0; i < times.counts.size(); ++i) {
    below += times.counts[i];
    labels.back().second =
        i < CallTimes::bounds.size() ? plainNumeral(CallTimes::bounds[i]) : "+Inf";
    text.sample("_bucket", labels, below);
  }
  labels.pop_back();
  text.sample("_count", labels, below);
  text.sample("_sum", labels, times.sum.count());
}

void addDurations(MetricsText& text, const FilesResult& call) {
  text.family("opnimp_call_duration_seconds", "histogram", "seconds",
              "How long calls of the database took.");
  for (const ImportResult* file : call.files()) {
    for (std::size_t kind = 0; kind < callKindCount; ++kind) {
      addTimes(text,
               {{"file", file->arguments.file},
                {"kind", std::string(codeOf(static_cast<CallKind>(kind)))}},
               file->calls.kinds[kind].times);
    }
  }
}

/// Only what an earlier call wrote is replaced: a name given by mistake may be that of any file.
void requireMetrics(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(toPath(path), error)) return;
  constexpr std::string_view start = "# TYPE opnimp_";
  std::string bytes(start.size(), '\0');
  const auto read = [&] {
    const auto file = NativeFileSystem().openInput(path);
    bytes.resize(file->read(bytes.data(), bytes.size()));
  };
  // What cannot be read is told when it is written.
  trapErrors(read, [&](const RuntimeError&) { bytes.clear(); });
  if (bytes.empty() || bytes == start) return;
  throw UsageError("--metrics would replace " + path +
                   ", which holds no metrics of an import: choose another name");
}

}  // namespace

std::string metricsText(const FilesResult& call, ExitStatus status) {
  MetricsText text;
  addCall(text, call, status);
  addFiles(text, call, "opnimp_run", "", "Number of the run in the journal, 0 for none.",
           [](const ImportResult& file) { return file.run; });
  addFiles(text, call, "opnimp_file_size_bytes", "bytes", "Size of the file.",
           [](const ImportResult& file) { return file.input->fileBytes().size(); });
  addFiles(text, call, "opnimp_duration_seconds", "seconds",
           "From its first record to the account.",
           [](const ImportResult& file) { return file.seconds; });
  addFiles(
      text, call, "opnimp_account_adds_up", "", "1 if every record is accounted for.",
      [](const ImportResult& file) { return file.hasAccount() && file.account.addsUp() ? 1 : 0; });
  addFiles(text, call, "opnimp_lock_waits", "", "Calls that were seen to wait for a lock.",
           [](const ImportResult& file) { return file.lockWaits; });
  addFiles(text, call, "opnimp_host_changes", "",
           "How often the run lost its host and went on at another one.",
           [](const ImportResult& file) { return file.hostChanges.size(); });
  addRecords(text, call);
  addCounts(text, call);
  addDurations(text, call);
  return std::move(text).ended();
}

MetricsFile::MetricsFile(std::string path) : path_(std::move(path)) {
  requireMetrics(path_);
  NativeFileSystem files;
  // A replacement that is never closed changes nothing.
  writing("the metrics", path_, "--metrics", [&] { files.openReplacement(path_); });
}

void MetricsFile::write(std::string_view text) const {
  NativeFileSystem files;
  writing("the metrics", path_, "--metrics", [&] { writeFile(files, path_, text); });
}

}  // namespace velk
