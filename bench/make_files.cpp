// Writes the input files, the same ones on every machine and every day.
//
//   bench_make_files FOLDER

#include <array>
#include <cstdint>
#include <fstream>
#include <iomanip>
#include <string>

#include "bench/measurement.h"

using namespace velk::bench;

namespace {

/// A linear congruential generator: the standard library's distributions differ between libraries.
class Dice {
 public:
  std::uint32_t below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>((state_ >> 33) % limit);
  }

 private:
  std::uint64_t state_ = 20080401;
};

constexpr std::array<const char*, 12> firstNames{"Shree",   "New",    "Om",      "Patil",
                                                 "Royal",   "Balaji", "Laxmi",   "Quality",
                                                 "Everest", "City",   "Krishna", "Sai"};
// One name in twelve needs quotes.
constexpr std::array<const char*, 12> secondNames{
    "Traders", "General Stores", "Provision", "Agencies",   "Super Market", "Kirana",
    "Medical", "Brothers",       "Dairy",     "Sweet Mart", "Bazaar",       ", Prop. K. Rao"};
constexpr std::array<const char*, 4> cities{"Pune", "Satara", "Kolhapur", "Baramati"};

std::string name(Dice& dice) {
  const std::string first = firstNames[dice.below(firstNames.size())];
  const std::string second = secondNames[dice.below(secondNames.size())];
  return second.front() == ',' ? '"' + first + second + '"' : first + ' ' + second;
}

std::string money(std::uint32_t hundredths) {
  const std::string cents = std::to_string(hundredths % 100);
  return std::to_string(hundredths / 100) + (cents.size() == 1 ? ".0" : ".") + cents;
}

/// The seven fields of an opening document, of one of `customers` customers.
void writeDocument(std::ostream& out, Dice& dice, std::uint32_t customers, std::uint32_t number) {
  const std::uint32_t bill = 100 + dice.below(9'999'900);
  out << 'K' << std::setw(5) << 1 + dice.below(customers) << ',' << name(dice) << ",INV/" << number
      << ',' << std::setw(2) << 1 + dice.below(28) << '/' << std::setw(2) << 1 + dice.below(12)
      << "/2007," << money(bill) << ',' << money(dice.below(bill)) << ",Invoice";
}

constexpr std::array<const char*, 3> salesmanTypes{"Van Sales", "Ready Stock", "Order Booking"};

/// What an export of salesmen holds; no quotes, no commas within.
void writeSalesmen(const std::string& path, std::uint32_t rows) {
  std::ofstream out(path, std::ios::binary);
  Dice dice;
  out << "Salesman,Address,ResNumber,MobNumber,Existing DSType,DSType,HandHeld DS\n"
      << std::setfill('0');
  for (std::uint32_t row = 1; row <= rows; ++row) {
    const char* const type = salesmanTypes[dice.below(salesmanTypes.size())];
    out << firstNames[dice.below(firstNames.size())] << ' ' << row << ',' << 1 + dice.below(900)
        << " Station Road " << cities[dice.below(cities.size())] << ",020-24" << std::setw(6)
        << dice.below(1'000'000) << ",98" << std::setw(8) << dice.below(100'000'000) << ',' << type
        << ',' << type << ',' << (dice.below(2) == 0 ? "YES" : "No") << '\n';
  }
  require(out.flush().good(), "an input file can't be written");
}

void writeFile(const std::string& path, std::uint32_t rows, std::uint32_t customers, bool wide) {
  std::ofstream out(path, std::ios::binary);
  Dice dice;
  out << std::setfill('0')
      << "Customer ID,Customer Name,Reference,Date,Bill Amount,Balance,Document Type"
      << (wide ? ",City,Phone,Credit Days\r\n" : "\r\n");
  for (std::uint32_t row = 1; row <= rows; ++row) {
    writeDocument(out, dice, customers, row);
    if (wide) {
      out << ',' << cities[dice.below(cities.size())] << ",020-24" << std::setw(6)
          << dice.below(1'000'000) << ',' << 7 * dice.below(7);
    }
    out << "\r\n";
  }
  require(out.flush().good(), "an input file can't be written");
}

/// Opening documents as a program writes them in a country with decimal commas: semicolons, line
/// feeds, UTF-8, and an accent in one name of four.
void writeForeign(const std::string& path, std::uint32_t rows) {
  std::ofstream out(path, std::ios::binary);
  Dice dice;
  out << std::setfill('0') << "Customer ID;Customer Name;Reference;Date;Bill Amount;Balance\n";
  for (std::uint32_t row = 1; row <= rows; ++row) {
    const std::uint32_t bill = 100 + dice.below(9'999'900);
    const auto amount = [](std::string text) { return text.replace(text.size() - 3, 1, ","); };
    out << 'K' << std::setw(5) << 1 + dice.below(2000) << ';'
        << firstNames[dice.below(firstNames.size())] << (dice.below(4) == 0 ? " Caf\xC3\xA9 " : " ")
        << cities[dice.below(cities.size())] << ";INV/" << row << ';' << std::setw(2)
        << 1 + dice.below(28) << '.' << std::setw(2) << 1 + dice.below(12) << ".2007;"
        << amount(money(bill)) << ';' << amount(money(dice.below(bill))) << '\n';
  }
  require(out.flush().good(), "an input file can't be written");
}

/// Branches, ten to a bank.
void writeBranches(const std::string& path, std::uint32_t rows) {
  std::ofstream out(path, std::ios::binary);
  out << "Bank Code,Bank Name,Branch Code,Branch Name\r\n";
  for (std::uint32_t row = 0; row < rows; ++row) {
    const std::uint32_t bank = row / 10;
    out << 'B' << bank << ",Bank of Sector " << bank << ",R" << row << ",Branch " << row << "\r\n";
  }
  require(out.flush().good(), "an input file can't be written");
}

void writeVendors(const std::string& path, std::uint32_t rows) {
  std::ofstream out(path, std::ios::binary);
  Dice dice;
  out << "Vendor Code,Vendor Name,Address,Phone,Contact Person,Locality,Sale Type,TNGST,CST,"
         "Pan Number\r\n";
  for (std::uint32_t row = 0; row < rows; ++row) {
    out << 'W' << row << ",Vendor " << row << ',' << cities[dice.below(cities.size())]
        << ",020-24451201,R. Menon,Local,Second Sales,TN/" << row << ",CST/" << row
        << ",AAACP0001A\r\n";
  }
  require(out.flush().good(), "an input file can't be written");
}

}  // namespace

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_make_files FOLDER");
    const std::string folder = argv[1];
    writeFile(folder + "/documents-32766x7.csv", 32'766, 2000, false);
    writeFile(folder + "/documents-1000000x10.csv", 1'000'000, 99'999, true);
    writeFile(folder + "/documents-10000x7.csv", 10'000, 2000, false);
    writeForeign(folder + "/foreign-1000000x6.csv", 1'000'000);
    writeBranches(folder + "/branches-10000x4.csv", 10'000);
    writeVendors(folder + "/vendors-10000x10.csv", 10'000);
    writeSalesmen(folder + "/salesmen-60000.csv", 60'000);
    writeSalesmen(folder + "/salesmen-1000.csv", 1000);
  });
}
