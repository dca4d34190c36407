// Makes the sample company's database with the 2,000 customers of the input files.
//
//   bench_make_company PATH

#include "bench/measurement.h"
#include "platform/odbc/odbc_connection.h"
#include "samples/company/sample_company.h"

using namespace velk;
using namespace velk::bench;

int main(int argc, char** argv) {
  return runMeasurement([&] {
    require(argc == 2, "usage: bench_make_company PATH");
    createSampleCompany(argv[1]);
    const auto connection = openOdbc(embeddedConnectionString(argv[1]));
    connection->Execute(
        "INSERT INTO Customer (CustomerID, CustomerName) "
        "WITH RECURSIVE k(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM k WHERE n < 2000) "
        "SELECT printf('K%05d', n), printf('Customer %d', n) FROM k");
  });
}
