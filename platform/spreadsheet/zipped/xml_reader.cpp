#include "platform/spreadsheet/zipped/xml_reader.h"

#include <expat.h>

#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <type_traits>

#include "platform/spreadsheet/damage.h"

namespace velk {

namespace {

/// Documents of workbooks stay far below.
constexpr int deepest = 200;

std::string_view withoutPrefix(std::string_view name) {
  return name.substr(name.find(':') + 1);
}

struct FreeParser {
  void operator()(XML_Parser parser) const { ::XML_ParserFree(parser); }
};

/// Expat is C: no exception may pass through it, so that one waits until it has returned.
class Reading {
 public:
  explicit Reading(XmlHandler& handler) : parser_(::XML_ParserCreate(nullptr)), handler_(handler) {
    if (!parser_) throw std::bad_alloc();
    ::XML_SetUserData(parser_.get(), this);
    ::XML_SetElementHandler(parser_.get(), &Reading::begins, &Reading::ends);
    ::XML_SetCharacterDataHandler(parser_.get(), &Reading::has);
    ::XML_SetStartDoctypeDeclHandler(parser_.get(), &Reading::declares);
  }

  void feed(std::string_view bytes, bool isLast) {
    const auto status =
        ::XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), isLast ? 1 : 0);
    if (failure_) std::rethrow_exception(failure_);
    if (status == XML_STATUS_OK) return;
    if (::XML_GetErrorCode(parser_.get()) == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    damaged("a part of it is not well formed");
  }

 private:
  template <class Step>
  void guarded(Step step) noexcept {
    if (failure_) return;
    try {
      step();
    } catch (...) {
      failure_ = std::current_exception();
      ::XML_StopParser(parser_.get(), XML_FALSE);
    }
  }

  static Reading& of(void* data) { return *static_cast<Reading*>(data); }
  static void begins(void* data, const char* name, const char** attributes) {
    of(data).guarded([&] {
      if (++of(data).depth_ > deepest) damaged("a part of it is nested too deep");
      of(data).handler_.begin(withoutPrefix(name), XmlAttributes(attributes));
    });
  }
  static void ends(void* data, const char* name) {
    of(data).guarded([&] {
      --of(data).depth_;
      of(data).handler_.end(withoutPrefix(name));
    });
  }
  static void has(void* data, const char* text, int length) {
    of(data).guarded([&] { of(data).handler_.text({text, static_cast<std::size_t>(length)}); });
  }
  static void declares(void* data, const char* /*name*/, const char* /*system*/,
                       const char* /*open*/, int /*hasOwn*/) {
    of(data).guarded([] { damaged("a part of it declares entities"); });
  }

  std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
  XmlHandler& handler_;
  std::exception_ptr failure_;
  int depth_ = 0;
};

}  // namespace

bool XmlAttributes::has(std::string_view name) const {
  return (*this)[name].data() != nullptr;
}

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (name == *pair) return pair[1];
  }
  return {};
}

void readXml(const ZipArchive& archive, std::string_view part, XmlHandler& handler) {
  Reading reading(handler);
  archive.read(part, [&](std::string_view bytes) { reading.feed(bytes, false); });
  reading.feed({}, true);
}

}  // namespace velk
