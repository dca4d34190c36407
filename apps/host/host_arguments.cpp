#include "apps/host/host_arguments.h"

#include "base/errors.h"

namespace velk {

namespace {

[[noreturn]] void refuse(const std::string& why) {
  throw RuntimeError(ErrorNumber::InvalidProcedureCall, why + "; see --help");
}

}  // namespace

HostArguments readHostArguments(const std::vector<std::string>& words) {
  HostArguments arguments;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const auto value = [&] {
      if (i + 1 == words.size()) refuse(words[i] + " needs a value");
      return words[++i];
    };
    if (words[i] == "--database") {
      arguments.database = value();
    } else if (words[i] == "--own-ado") {
      arguments.ownAdo = true;
    } else if (words[i] == "--help") {
      arguments.help = true;
    } else {
      refuse("unknown option " + words[i]);
    }
  }
  return arguments;
}

}  // namespace velk
