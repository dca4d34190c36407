// The report of an import as a page.
#pragma once

#include "apps/opnimp/report/html_report.h"
#include "apps/opnimp/report/import_result.h"

namespace velk {

HtmlReport importPage(const ImportResult& result);

}  // namespace velk
