#include "platform/native/confined_work.h"

#include <new>

namespace velk {

namespace {

struct TooMuch {};

}  // namespace

// A process of Windows cannot be left with nothing but a pipe: the work is done in this one, and
// only what it hands back has a limit.
WorkResult workConfined(const WorkLimits& limits,
                        const std::function<void(const HandBack&)>& work) {
  WorkResult result;
  try {
    work([&](std::string_view bytes) {
      if (bytes.size() > limits.result - result.bytes.size()) throw TooMuch();
      result.bytes += bytes;
    });
    result.end = WorkResult::End::Whole;
  } catch (const std::bad_alloc&) {
    result.end = WorkResult::End::NoMemory;
  } catch (const TooMuch&) {
    result.end = WorkResult::End::TooLong;
  }
  return result;
}

}  // namespace velk
