// A file of more records than one import takes, in parts that each have its titles.
#pragma once

#include "apps/opnimp/cli/arguments.h"
#include "apps/opnimp/cli/exit_status.h"
#include "apps/opnimp/cli/streams.h"

namespace velk {

/// Writes FILE.1.csv, FILE.2.csv and so on, all of them or none. A file of which the screens would
/// read other records than it has is refused: convert makes one of it that they read.
ExitStatus splitFile(const Arguments& arguments, const Streams& streams);

}  // namespace velk
