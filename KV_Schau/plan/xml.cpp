#include "KV_Schau/plan/xml.h"

#include "KV_Schau/variant/encoding.h"

namespace schau::plan {
namespace {

bool is_xml_character(char32_t code_point) {
  if (code_point < U' ') return code_point == U'\t' || code_point == U'\n';
  return code_point < 0xD800 || (code_point > 0xDFFF && code_point < 0xFFFE) || code_point > 0xFFFF;
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const variant::Utf8Character character = variant::first_utf8_character(text);
    switch (character.code_point) {
      case U'&':
        out += "&amp;";
        break;
      case U'<':
        out += "&lt;";
        break;
      case U'>':
        out += "&gt;";
        break;
      case U'"':
        out += "&quot;";
        break;
      case U'\'':
        out += "&#39;";
        break;
      default:
        variant::append_utf8(out, is_xml_character(character.code_point) ? character.code_point : U'�');
    }
    text.remove_prefix(character.size);
  }
  return out;
}

}  // namespace schau::plan
