#include "apps/opnimp/report/html_text.h"

#include "apps/opnimp/cli/printable.h"

namespace velk {

std::string html(std::string_view text) {
  std::string escaped;
  for (const char c : printable(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace velk
