// What the help says of commands and options. Line breaks are made by hand: the library indents
// lines, but does not break them.
#pragma once

#include <array>
#include <string>

namespace velk {

inline const std::string databaseHelp =
    "an ODBC connection string, or the path of an embedded database;\n"
    "else the environment variable OPNIMP_DATABASE has one of these,\n"
    "or the path of a file with a connection string that only its\n"
    "owner may read, which keeps a password out of process lists;\n"
    "repeated, or a line each in that file: the hosts of one database,\n"
    "and a run that loses one goes on at the next";
inline const std::string mapHelp =
    "map a column of the file, by its title or as #N for the Nth, to a\n"
    "field; on top of those whose titles match; may be repeated";
inline const std::string rejectsHelp =
    "write the refused records to FILE, to be corrected and imported\n"
    "again; why to FILE.reasons.csv, records to look up to\n"
    "FILE.check.csv, records that were not reached to FILE.rest.csv\n"
    "(for a workbook all but the reasons are workbooks:\n"
    "FILE.check.xls); none of them may be there already";
inline const std::string journalHelp =
    "the journal of all runs (default: opnimp/journal in\n"
    "$XDG_STATE_HOME, else in ~/.local/state; on Windows in\n"
    "%LOCALAPPDATA%)";
inline const std::string againHelp =
    "post opening balances also if an earlier run of the journal\n"
    "posted them";
inline const std::string acceptHelp =
    "import although values are read otherwise than they are\n"
    "written, as the screens do: codes of the harmful warnings to\n"
    "accept, separated by commas, or all";
inline const std::string reportHelp =
    "write the report as a page to be printed, signed and kept; a\n"
    "file of that name is never replaced";
inline const std::string metricsHelp =
    "write what the call came to for a monitoring system, as\n"
    "OpenMetrics text; replaces what the last call wrote";
inline const std::string logFormatHelp =
    "json: one JSON object a line on standard error for all that is\n"
    "told while the command runs (default: text)";
inline const std::string resumeHelp =
    "go on with a file behind the last record that a run reached\n"
    "which broke off; records in doubt go to FILE.check.csv of\n"
    "--rejects and are not posted again; of several files those that\n"
    "are done are passed over";
inline const std::string fromLineHelp =
    "import only the records from line N of the file on; takes one file";
inline const std::string wholeHelp =
    "in one transaction, which is taken back if a record is refused,\n"
    "fails, or is not reached; takes one file";
inline const std::string oneByOneHelp =
    "ask the database each question by itself: no look-up ahead of\n"
    "its record, no two calls in one message";
inline const std::string filesHelp =
    "the file with the records; several are imported one after the\n"
    "other with one account, and nothing of any if one is refused;\n"
    "- is standard input";
inline const std::string numberedHelp =
    ";\n"
    "--rejects r.csv and --report p.html then write r.1.csv, r.2.csv,\n"
    "p.1.html and so on";
inline const std::string exportHelp =
    "write all salesmen to an .xls workbook, with drop-down lists of\n"
    "their DS types; a workbook of that name is replaced";
inline const std::string jsonHelp = "one JSON document on standard output instead of text";
inline const std::string encodingHelp =
    "the encoding of the file: UTF-8, UTF-16LE, UTF-16BE,\n"
    "windows-1252, or any other that the machine's library knows\n"
    "(default: what the file shows)";
inline const std::string sheetHelp =
    "the sheet of a workbook, by its name or as #N for the Nth (default:\n"
    "the one that has values or titles; of salesmen the first)";
inline const std::string delimiterHelp =
    "what separates values: auto, comma, semicolon, tab or bar";
inline const std::string skipHelp = "the titles stand in the line behind the first N";
inline const std::string headerHelp = "the titles stand in line N (default: where they are found)";
inline const std::string lastLinesHelp = "the last N lines are no records, such as totals";
inline const std::string dateOrderHelp =
    "how dates are written that read both ways: auto, dmy, mdy, ymd";
inline const std::string decimalHelp = "what stands in front of decimals: auto, point or comma";
inline const std::string replaceHelp =
    "put \"?\" in the place of letters that windows-1252 does not have";
inline const std::string profileHelp =
    "read the file as a saved profile says: its name, or the path of\n"
    "its file; options given besides come before those in it";
inline const std::string saveProfileHelp =
    "save how the file is read: which columns are which fields, what\n"
    "was given, the order of dates and the decimal sign; for --profile";
inline const std::string rawHelp =
    "import the file as it is, as the screens would: nothing of\n"
    "another program's format is converted";
inline const std::string quietHelp =
    "no report and no progress where all goes well (exit status 0)";
inline const std::string verboseHelp =
    "tell on standard error of each run and record that needs\n"
    "attention, as it comes";

struct Example {
  const char* command;
  const char* lines;
};
inline constexpr std::array<Example, 13> examples{
    {{"import",
      "  opnimp import customer-opening balances.csv --dry-run --database company.db\n"
      "  opnimp import customer-opening balances.csv --map \"Customer ID=Party Code\" \\\n"
      "    --rejects left.csv --report balances.html\n"
      "  opnimp import vendor april.csv --profile acme\n"},
     {"preview",
      "  opnimp preview customer-opening balances.csv\n"
      "  opnimp preview customer-opening balances.csv --date-order mdy --save-profile acme\n"
      "  unzip -p export.zip balances.csv | opnimp preview customer-opening -\n"},
     {"convert",
      "  opnimp convert customer-opening balances.txt balances.csv\n"
      "  opnimp convert bank-branch - - --encoding windows-1250 <banks.txt >banks.csv\n"},
     {"export", "  opnimp export salesman salesmen.xls --database company.db\n"},
     {"demo-database", "  opnimp demo-database company.db\n"},
     {"runs", "  opnimp runs\n  opnimp runs --json\n"},
     {"report", "  opnimp report 12\n  opnimp report 12 --html run12.html\n"},
     {"reversal", "  opnimp reversal 12 taken-back.csv\n"},
     {"rejects", "  opnimp rejects 12 left.csv\n"},
     {"check-database", "  opnimp check-database customer-opening --database company.db\n"},
     {"kinds", "  opnimp kinds\n  opnimp kinds vendor --json\n"},
     {"template", "  opnimp template customer-opening balances.csv\n"},
     {"split", "  opnimp split balances.csv --records 10000\n"}}};

inline const std::string mainFooter =
    R"(`opnimp help COMMAND` lists the kinds and options of a command; after "--" follows no option.

Exit status:
  0  everything was posted, or exported
  1  some records were not, or not wholly, or not as they are written: see the report
  2  refused: the file, its columns or the mapping do not do, values would be read otherwise
     than they are written, or the file to export to is open in another program; nothing was
     imported or exported
  3  the command line makes no sense, or names no database
  4  a file or the database could not be opened or written; nothing was imported or exported
  5  the run broke off, or its account does not add up)";

inline const std::string previewFooter =
    R"(Exit status:
  0  the file can be imported as it is
  1  it can, but some records would not be posted, or not as they are written
  2  it would be refused: its columns or the mapping do not do, or values would be read
     otherwise than they are written
  3  the command line makes no sense
  4  a file or the database could not be opened
  5  the import would break off)";

inline const std::string checkFooter =
    R"(Exit status:
  0  imports can work
  1  they can, but the user has rights that do harm
  2  something that an import needs is missing
  3  the command line makes no sense, or names no database
  4  the database could not be opened)";

}  // namespace velk
