// A run that posts everything or nothing.
#pragma once

#include <string>

#include "apps/opnimp/audit/recorder.h"
#include "apps/opnimp/run/surroundings.h"

namespace velk {

/// One transaction around a whole run.
class WholeRun {
 public:
  /// Begins it, and has the recorder look after each call whether it is open. Raises CannotOpen if
  /// the database has no transactions, or cannot tell.
  WholeRun(OwnConnection& database, Recorder& recorder);
  /// Takes back what is not settled.
  ~WholeRun();
  WholeRun(const WholeRun&) = delete;
  WholeRun& operator=(const WholeRun&) = delete;

  /// Keeps everything or takes it back, and tells the recorder which. Answers what went wrong,
  /// empty for nothing.
  std::string settle(bool keep);

 private:
  struct End {
    Changes changes;
    std::string failure;
  };
  End commit();
  End takeBack();
  bool isOpen() const;
  bool hasPosted() const;

  OwnConnection& database_;
  Recorder& recorder_;
  bool settled_ = false;
};

}  // namespace velk
