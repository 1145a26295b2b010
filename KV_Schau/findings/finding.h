#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/variant.h"

namespace schau::findings {

/// How much a finding matters for the areas.
enum class Severity : std::uint8_t {
  note,     ///< Hinweis: worth knowing
  warning,  ///< Warnung: the result is possibly not what was meant
  error     ///< Fehler: KV_Akum gives no result or a wrong area
};

/// "Hinweis", "Warnung" or "Fehler".
std::string_view word_of(Severity severity);

/// What a kind of finding is about.
struct Rule {
  std::string_view identifier;  ///< German, in lower case, words joined by hyphens
  Severity severity = Severity::note;
  std::string_view explanation;  ///< one German line: what is found and what KV_Akum does with it
};

struct Finding {
  const Rule* rule = nullptr;  ///< never null in a finding
  variant::Place place;
  std::string text;  ///< UTF-8, a German sentence without full stop
  std::string hint;  ///< UTF-8, such as `gemeint: 64.50`; may be empty
};

/// Puts findings into the order of their places; those of one place stay as they are.
void sort_by_place(std::vector<Finding>& findings);

/// How many findings there are of each severity.
struct Counts {
  std::size_t errors = 0;
  std::size_t warnings = 0;
  std::size_t notes = 0;
};
Counts count(const std::vector<Finding>& findings);

}  // namespace schau::findings
