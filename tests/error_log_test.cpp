#include "shared/error_log.h"

#include "tests/support/test_world.h"

namespace velk {

TEST_CASE("lines of the log") {
  TestWorld world;
  Velk_ModOpnImp& module = world.module;
  world.files.contents[world.logPath()] = "kept\r\n";
  module.WriteErrorLog("one\r\ntwo");
  module.WriteErrorLog("");
  module.LogError("x", "53");
  module.logTrapped("Screen : Routine - ", RuntimeError(ErrorNumber::ProviderTimeout, "busy"));
  module.WriteErrorLog("€ \u0416");
  CHECK(world.log() ==
        "kept\none\ntwo\n\n(53): x\n(-2147217871): Screen : Routine - busy\n\x80 ?\n");
  CHECK(world.files.open == 0);
}

TEST_CASE("a log that can't be written is silent and leaves nothing open") {
  using Call = MemoryFiles::Call;
  for (const Call call : {Call::OpenAppend, Call::Write, Call::Close}) {
    CAPTURE(static_cast<int>(call));
    TestWorld world;
    world.files.failing = call;
    world.module.WriteErrorLog("lost");
    CHECK(world.files.open == 0);
    CHECK(world.module.files().freeFile() == 1);
    CHECK(world.messages.empty());
  }
}

TEST_CASE("traps keep runtime errors in, and nothing else; the log may be another than the file") {
  struct Lines final : ErrorLog {
    void append(std::string_view line) override {
      if (line == "bad") throw RuntimeError(ErrorNumber::DiskFull);
      text.append(line).append("\n");
    }
    std::string text;
  } memory;
  TestWorld world;
  Velk_ModOpnImp module(world.module.platform(), &memory);
  const auto fail = [] { throw RuntimeError(7, "error"); };
  CHECK(module.trap("", [] {}));
  CHECK_FALSE(module.trap("tag ", fail));
  module.WriteErrorLog("bad");
  module.WriteErrorLog("line");
  CHECK_THROWS_AS(module.trap("", [] { throw 1; }), int);
  CHECK(memory.text == "(7): tag error\nline\n");
  CHECK(world.log().empty());
}

}  // namespace velk
