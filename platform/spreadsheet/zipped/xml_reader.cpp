#include "platform/spreadsheet/zipped/xml_reader.h"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include "platform/spreadsheet/damage.h"

namespace velk {

namespace {

/// Documents of workbooks stay far below.
constexpr int deepest = 200;

/// Between the parts of a name: its namespace, if it has one, the name, and its prefix, if it has
/// one.
constexpr char separator = '\n';

struct XmlName {
  std::string_view space;
  std::string_view local;
  std::string_view prefix;
};

XmlName nameOf(std::string_view written) {
  const std::size_t first = written.find(separator);
  if (first == std::string_view::npos) return {{}, written, {}};
  const std::string_view rest = written.substr(first + 1);
  const std::size_t second = std::min(rest.find(separator), rest.size());
  return {written.substr(0, first), rest.substr(0, second),
          rest.substr(std::min(second + 1, rest.size()))};
}

bool isNamed(std::string_view written, std::string_view name) {
  if (written == name) return true;
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return false;
  const XmlName parts = nameOf(written);
  return parts.prefix == name.substr(0, colon) && parts.local == name.substr(colon + 1);
}

struct FreeParser {
  void operator()(XML_Parser parser) const { ::XML_ParserFree(parser); }
};

/// Expat is C: no exception may pass through it, so that one waits until it has returned.
class Reading {
 public:
  Reading(XmlHandler& handler, Elements wanted)
      : parser_(::XML_ParserCreateNS(nullptr, separator)), handler_(handler), wanted_(wanted) {
    if (!parser_) throw std::bad_alloc();
    ::XML_SetReturnNSTriplet(parser_.get(), 1);
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

  bool wants(const XmlName& name) const {
    return wanted_ == Elements::All || name.space == rootSpace_;
  }

  static Reading& of(void* data) { return *static_cast<Reading*>(data); }
  static void begins(void* data, const char* name, const char** attributes) {
    of(data).guarded([&] {
      Reading& self = of(data);
      if (++self.depth_ > deepest) damaged("a part of it is nested too deep");
      const XmlName parts = nameOf(name);
      if (self.depth_ == 1) self.rootSpace_ = parts.space;
      if (self.wants(parts)) self.handler_.begin(parts.local, XmlAttributes(attributes));
    });
  }
  static void ends(void* data, const char* name) {
    of(data).guarded([&] {
      Reading& self = of(data);
      --self.depth_;
      if (const XmlName parts = nameOf(name); self.wants(parts)) self.handler_.end(parts.local);
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
  const Elements wanted_;
  std::string rootSpace_;
  std::exception_ptr failure_;
  int depth_ = 0;
};

}  // namespace

bool isXmlTrue(std::string_view value) {
  return value == "1" || value == "true";
}

bool XmlAttributes::has(std::string_view name) const {
  return (*this)[name].data() != nullptr;
}

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2) {
    if (isNamed(*pair, name)) return pair[1];
  }
  return {};
}

void readXml(const ZipArchive& archive, std::string_view part, XmlHandler& handler,
             Elements wanted) {
  Reading reading(handler, wanted);
  archive.read(part, [&](std::string_view bytes) { reading.feed(bytes, false); });
  reading.feed({}, true);
}

}  // namespace velk
