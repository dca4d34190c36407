#include "shared/record_reader.h"

#include "tests/support/test_world.h"

namespace velk {
namespace {

struct Reading {
  TestWorld world;
  RecordReader reader{world.module};

  explicit Reading(std::string_view content) {
    world.files.contents["in"] = content;
    reader.FileName("in");
  }
  /// The records from the current one on, fields joined by "|", as a caller's loop reads them.
  Texts records() {
    Texts found;
    for (; !reader.IsEOF(); reader.MoveNext()) {
      std::string& record = found.emplace_back();
      for (std::int32_t i = 0; i < reader.Count(); ++i) record += reader.Fields(i) + "|";
    }
    return found;
  }
};

TEST_CASE("records of a file, once and again") {
  const std::pair<const char*, Texts> rows[] = {{"a,\"b,c\"\r\n1,2", {"a|\"b,c\"|", "1|2|"}},
                                                {"a\r\n\r\nb\r", {"a|", "", "b|"}},
                                                {"\r\n", {""}},
                                                {"a\nb", {"a\nb|"}}};
  for (const auto& row : rows) {
    CAPTURE(row.first);
    Reading in(row.first);
    in.reader.Rewind();  // from the middle, with the rest of the file in the buffer
    CHECK(in.records() == row.second);
    in.reader.MoveNext();
    CHECK(in.reader.IsEOF());
    in.reader.Rewind();
    CHECK(in.records() == row.second);
  }
}

TEST_CASE("readers that have no record") {
  Reading empty("");
  for (int i = 0; i < 2; ++i) {
    CHECK_FALSE(empty.reader.IsEOF());
    CHECK(errorOf([&] { empty.reader.Count(); }) == 13);
    CHECK(errorOf([&] { empty.reader.Fields(0); }) == 13);
    empty.reader.MoveNext();
    CHECK(empty.reader.IsEOF());
    empty.reader.Rewind();
  }
  RecordReader unopened(empty.world.module);
  unopened.MoveNext();
  unopened.Rewind();
  CHECK_FALSE(unopened.IsEOF());
  CHECK(unopened.Count() == 0);
  CHECK(unopened.Fields(5).empty());
}

TEST_CASE("fields by index, also behind the end") {
  Reading in("a,b\r\n\r\nlast");
  CHECK(errorOf([&] { in.reader.Fields(2); }) == 9);
  CHECK(errorOf([&] { in.reader.Fields(-1); }) == 9);
  in.reader.MoveNext();
  CHECK(errorOf([&] { in.reader.Fields(0); }) == 9);
  in.reader.MoveNext();
  in.reader.MoveNext();
  CHECK(in.reader.IsEOF());
  CHECK(in.reader.Fields(0) == "last");
}

TEST_CASE("opening another file keeps the earlier one open") {
  TestWorld world;
  world.files.contents = {{"a", "first"}, {"b", "second"}};
  {
    RecordReader reader(world.module);
    reader.FileName("a");
    reader.MoveNext();
    reader.FileName("b");
    CHECK(reader.Fields(0) == "second");
    CHECK(reader.IsEOF());  // only Rewind takes it back
    // What can't be opened leaves a reader that fails, not one that reads on in the other file.
    reader.FileName("missing");
    CHECK(errorOf([&] { reader.MoveNext(); }) == 52);
    RecordReader(world.module).FileName("b");
    CHECK(errorOf([&] { reader.Rewind(); }) == 52);
    reader.FileName("b");
  }
  CHECK(world.files.open == 2);
}

TEST_CASE("a file that can't be opened is told with the error's number as the style") {
  Reading in("a");
  in.world.files.failing = MemoryFiles::Call::OpenInput;
  in.world.files.error = ErrorNumber::PermissionDenied;
  RecordReader reader(in.world.module);
  reader.FileName("in");
  CHECK(in.world.messages == Texts{"box 70: Permission denied"});
  CHECK(reader.FileName() == "in");
  CHECK(reader.Count() == 0);
  CHECK(in.world.log().empty());
}

TEST_CASE("the check of the column count") {
  const auto refusal = [](int columns, const std::string& where, int commas) {
    return Texts{"box 48: 'in'\r\nFile does not contain expected number of columns (" +
                 std::to_string(columns) + ") in line number " + where +
                 ". Please make sure the line has exactly " + std::to_string(commas) +
                 " commas and try again. [Import]"};
  };
  const struct {
    const char* content;
    std::int16_t columns;
    Texts messages;
    const char* current;  // the first field of the record that the reader stands on
  } rows[] = {{"a,b\r\n1,\"2,3\"\r\n4,5", 2, {}, "a"},
              {"h,2,3\r\n,,\r\nA001,Acme\r\n", 3, refusal(3, "3starting with A001", 2), "A001"},
              {"\"a\"", 2, refusal(2, "1starting with \"a\"", 1), "\"a\""}};
  for (const auto& row : rows) {
    CAPTURE(row.content);
    Reading in(row.content);
    CHECK(RecordReader(in.world.module).ValidateData(row.columns, in.reader) ==
          row.messages.empty());
    CHECK(in.world.messages == row.messages);
    CHECK(in.reader.Fields(0) == row.current);
    CHECK_FALSE(in.reader.IsEOF());
  }
}

TEST_CASE("the check starts at the current record and fails on blank lines") {
  Reading in("title\r\na,b\r\nc,d");
  in.reader.MoveNext();
  CHECK(in.reader.ValidateData(2, in.reader));
  CHECK(in.reader.Fields(0) == "title");
  Reading blank("a,b\r\n\r\n"), empty("");
  CHECK(errorOf([&] { in.reader.ValidateData(2, blank.reader); }) == 9);
  CHECK(errorOf([&] { in.reader.ValidateData(2, empty.reader); }) == 13);
  empty.reader.MoveNext();
  CHECK(in.reader.ValidateData(2, empty.reader));
}

}  // namespace
}  // namespace velk
