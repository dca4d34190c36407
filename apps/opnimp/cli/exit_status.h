// What the program's exit status tells a script.
#pragma once

namespace velk {

enum class ExitStatus : int {
  Posted = 0,       ///< everything; skipped zero amounts included
  RecordsLeft = 1,  ///< some records need attention: not posted, or not without a word
  Refused = 2,      ///< nothing was imported: the file, its columns, values or mapping do not do
  Usage = 3,        ///< the command line makes no sense, or names no database
  CannotOpen = 4,   ///< a file, folder or database could not be opened or made
  BrokeOff = 5,     ///< the run ended before its end, or its account does not add up
};

}  // namespace velk
