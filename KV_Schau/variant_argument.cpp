#include "KV_Schau/variant_argument.h"

#include <fmt/format.h>

#include "KV_Schau/terminal.h"

namespace schau {

std::variant<variant::VariantPath, ExitStatus> variant_of(const std::string& argument) {
  const auto resolved = variant::resolve(argument);
  if (const auto* const path = std::get_if<variant::VariantPath>(&resolved)) return *path;
  const auto& refusal = std::get<variant::Refusal>(resolved);
  write_error(fmt::format("KV_Schau: {}.", refusal.reason));
  if (!refusal.way_out.empty()) write_error(fmt::format("  {}.", refusal.way_out));
  return refusal.kind == variant::Refusal::Kind::missing ? ExitStatus::failed : ExitStatus::usage;
}

}  // namespace schau
