#include <algorithm>

#include "m_strings/m_strings.h"
#include "runtime/fixed_text.h"
#include "runtime/units.h"

namespace m_strings {
namespace {

constexpr std::size_t base_name_width = 50;

PathParts parts_of(std::string_view path) {
  const std::size_t separator = path.rfind('\\');
  const std::size_t point = path.rfind('.');
  PathParts parts;
  parts.length = static_cast<std::int32_t>(path.size());
  parts.last_separator = separator == std::string_view::npos ? 0 : static_cast<std::int32_t>(separator) + 1;
  const bool has_extension =
      point != std::string_view::npos && static_cast<std::int32_t>(point) + 1 > parts.last_separator;
  parts.extension = has_extension ? static_cast<std::int32_t>(point) + 1 : parts.length + 1;
  return parts;
}

std::string built_path(std::string_view path, const SplitPathOptions& options, PathParts& parts) {
  const auto directory_length = static_cast<std::size_t>(parts.last_separator);
  const std::string_view prefix = runtime::trimmed(options.prefix.value_or(""));
  const std::string_view suffix = runtime::trimmed(options.suffix.value_or(""));
  std::string built(path.substr(0, directory_length));
  built.append(prefix);
  built.append(path.substr(directory_length, base_name_width));
  built.append(suffix).append(".").append(runtime::trimmed(*options.new_extension));
  parts.extension += static_cast<std::int32_t>(prefix.size() + suffix.size());
  parts.length = static_cast<std::int32_t>(built.size());
  return built;
}

}  // namespace

PathParts SplitPath(std::string_view path, const SplitPathOptions& options) {
  std::string result(runtime::trimmed(path));
  ToUpper(result);
  PathParts parts = parts_of(result);
  const bool extend = options.new_extension && parts.extension == parts.length + 1;
  if (extend) result = built_path(result, options, parts);
  if (options.exists != nullptr) {
    *options.exists = parts.length > parts.last_separator && runtime::file_exists(result);
  }
  if (options.new_path != nullptr) *options.new_path = result;
  return parts;
}

}  // namespace m_strings
