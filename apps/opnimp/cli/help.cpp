#include "apps/opnimp/cli/help.h"

#include "apps/opnimp/cli/kinds.h"

namespace velk {

namespace {

constexpr std::string_view usage =
    R"(opnimp imports opening data from files, and exports salesmen to be edited and imported again.

  opnimp import KIND FILE       post the file's records to the database
  opnimp preview KIND FILE      show the columns, what maps to what, and the first rows;
                                needs no database
  opnimp export salesman FILE   write all salesmen to an .xls workbook, with drop-down lists of
                                their DS types; a workbook of that name is replaced
  opnimp demo-database PATH     make the sample company's embedded database
  opnimp help, opnimp --version

)";

constexpr std::string_view optionsText = R"(
Options of import (preview takes --map and --json; export --database, --app-folder, --json):
  --database STRING    an ODBC connection string, or the path of an embedded database
                       (default: opnimp.db in the current folder, made with the sample
                       company on first use)
  --map "Field=Column" map a column of the file, by its title or as #N for the Nth, to a
                       field; on top of those whose titles match; may be repeated
  --dry-run            every check runs, nothing is posted
  --rejects FILE       write the refused records to FILE, to be corrected and imported again;
                       why to FILE.reasons.csv, records to look up to FILE.check.csv, records
                       that were not reached to FILE.rest.csv (for a workbook all but the
                       reasons are workbooks: FILE.check.xls); a .check or .rest file of an
                       earlier run must be dealt with and moved away first
  --app-folder DIR     where Error.log is written (default: the current folder)
  --json               one JSON document on standard output instead of text
  --                   what follows is no option

Exit status:
  0  everything was posted, or exported
  1  some records were not, or not wholly: see the report
  2  refused: the file, its columns or the mapping do not do, or the file to export to is open
     in another program; nothing was imported or exported
  3  the command line makes no sense
  4  a file or the database could not be opened or written; nothing was imported or exported
  5  the run broke off, or its account does not add up
)";

}  // namespace

std::string helpText() {
  std::string text(usage);
  text += "Kinds:\n";
  for (const ImportKind& kind : importKinds()) {
    text.append("  ").append(kind.name);
    text.append(kind.name.size() < 28 ? 28 - kind.name.size() : 1, ' ');
    text.append("  ").append(kind.what).append("\n");
  }
  return text.append(optionsText);
}

std::string versionText() {
  return "opnimp " OPNIMP_VERSION "\n";
}

}  // namespace velk
