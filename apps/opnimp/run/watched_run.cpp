#include "apps/opnimp/run/watched_run.h"

#include <chrono>
#include <future>
#include <thread>
#include <utility>

#include "base/errors.h"

namespace velk {

namespace {

using namespace std::chrono_literals;
constexpr auto glance = 50ms;  // how often it is looked after
constexpr auto toEnd = 500ms;  // for a run that only has to come to its next record
constexpr auto toCancel = 1s;  // for the driver to end a statement

bool ends(const std::future<void>& done, std::chrono::milliseconds within) {
  return done.wait_for(within) == std::future_status::ready;
}

/// False when the work was given up.
bool awaited(const std::future<void>& done, const WatchedRun& run) {
  std::string why;
  while (!ends(done, glance)) {
    why = run.whyEnd();
    if (!why.empty()) break;
    // While the work runs there is no way out of here.
    ignoringFailure(run.look);
  }
  if (ends(done, toEnd)) return true;
  run.gate.close(std::move(why));
  // In a thread of its own, because drivers may let nobody in as long as a call runs.
  if (run.cancel) std::thread(run.cancel).detach();
  if (ends(done, toCancel)) return true;
  // Outside of a call the work is soon done, or comes to its next one and ends there.
  while (!run.gate.takeOver()) {
    if (ends(done, glance)) return true;
  }
  return false;
}

}  // namespace

bool runWatched(const WatchedRun& run) {
  std::packaged_task<void()> task(run.work);
  std::future<void> done = task.get_future();
  std::thread worker(std::move(task));
  if (!awaited(done, run)) {
    worker.detach();
    return false;
  }
  worker.join();
  done.get();
  return true;
}

}  // namespace velk
