#include "platform/native/native_user.h"

#include <pwd.h>
#include <unistd.h>

namespace velk {

std::string userName() {
  const uid_t user = ::geteuid();
  // Nothing of the program runs beside this, so that the shared result stays as it is.
  const passwd* const entry = ::getpwuid(user);  // NOLINT(concurrency-mt-unsafe)
  return entry == nullptr ? std::to_string(user) : entry->pw_name;
}

}  // namespace velk
