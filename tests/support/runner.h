// The command-line runner in a folder of its own, with the sample company's database in it.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "apps/opnimp/opnimp.h"
#include "tests/support/scratch_database.h"

namespace velk {

#ifdef _WIN32
inline constexpr bool isWindows = true;
#else
inline constexpr bool isWindows = false;
#endif

struct Ran {
  int status = -1;
  std::string out;
  std::string err;
};

class RunnerWorld {
 public:
  TemporaryFolder folder;
  Surroundings surroundings = realSurroundings();  ///< its clock stands in 2008
  bool terminal = false;
  std::string kind = "customer-opening";  ///< of the files that are imported

  RunnerWorld();

  Ran run(std::vector<std::string> args);
  /// Imports a file into the sample company's database, the error log in the folder.
  Ran import(const std::string& file, std::vector<std::string> more = {});
  /// Writes lines, each with carriage return + line feed, as "in.csv" and imports it.
  Ran importLines(std::initializer_list<std::string_view> lines,
                  std::vector<std::string> more = {});

  /// Puts one that knows all customers, vendors and DS types in the place of every database. Each
  /// call, query or procedure, has a letter in `fates`: x refused, d refused, but nobody knows
  /// whether it took effect, t timed out, m out of memory, h never comes back, l its second
  /// statement is refused; X and L: so, and the connection is lost. All others work.
  void script(std::string_view fates);

  /// The sample company's database; a fresh one at first use.
  const std::string& database();
  /// First field of a query's first row, as text.
  std::string ask(std::string_view query);

 private:
  std::string database_;
};

inline bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// The titles that map by themselves.
inline constexpr std::string_view openingTitles =
    "Customer ID,Customer Name,Reference,Date,Bill Amount,Balance";
inline constexpr std::string_view bankTitles = "Bank Code,Bank Name,Branch Code,Branch Name";
inline constexpr std::string_view vendorTitles =
    "Vendor Code,Vendor Name,Address,Phone,Contact Person,Locality,Sale Type,TNGST,CST,Pan Number";
/// Records under openingTitles that the sample company takes, and one whose customer it has not.
inline constexpr std::string_view good1 = "C001,A,R1,03/03/2008,100.00,60.00";
inline constexpr std::string_view good2 = "C002,B,R2,04/03/2008,-50.00,-20.00";
inline constexpr std::string_view good3 = "C003,C,R3,,10.00,10.00";
inline constexpr std::string_view unknownCustomer = "C999,X,R4,03/03/2008,1.00,1.00";

/// How many debit notes the sample company has of its customers.
std::string debits(RunnerWorld& world);

/// The lines, each followed by carriage return + line feed.
std::string crlf(std::initializer_list<std::string_view> lines);

}  // namespace velk
