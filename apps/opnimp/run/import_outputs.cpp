#include "apps/opnimp/run/import_outputs.h"

#include <new>
#include <stdexcept>
#include <utility>

#include "apps/opnimp/report/import_page.h"
#include "apps/opnimp/report/report_file.h"

namespace velk {

std::vector<Writes> outputsOf(const Arguments& arguments) {
  std::vector<Writes> writes;
  if (const auto& rejects = arguments.rejects) {
    writes.push_back(
        {"--rejects", *rejects, RejectFiles::touched(*rejects, arguments.kind->format)});
  }
  if (const auto& report = arguments.report) writes.push_back({"--report", *report, {*report}});
  return writes;
}

ImportOutputs::ImportOutputs(const Arguments& arguments) {
  const auto& rejects = arguments.rejects;
  if (rejects) rejects_.emplace(*rejects, arguments.kind->format, arguments.dryRun);
  if (arguments.report) checkReportFile(*arguments.report);
}

void ImportOutputs::writeRejects(ImportResult& result) {
  if (!rejects_) return;
  RejectFiles::Written written = rejects_->write(*result.input, result.traces, result.setApart);
  result.rejectFiles = std::move(written.paths);
  result.rejectsError = std::move(written.failure);
}

void ImportOutputs::writeReport(ImportResult& result) {
  const auto& report = result.arguments.report;
  if (!report) return;
  std::string name = *report;  // what takes memory comes before the file is there
  try {
    writeReportFile(name, htmlPage(importPage(result)));
    result.reportFile = std::move(name);
  } catch (const std::runtime_error& error) {
    result.reportError = error.what();
  } catch (const std::bad_alloc&) {
    result.reportError = "the memory does not hold the report of this file";
  }
}

}  // namespace velk
