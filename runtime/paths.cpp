#include "runtime/paths.h"

#include <algorithm>

#include "runtime/cp1252.h"
#include "runtime/fixed_text.h"
#include "runtime/stop.h"

namespace runtime {

using namespace literals;

namespace {

constexpr char suite_separator = '\\';

struct Beside {
  std::string folder;  // of the variant, with its last backslash; empty while there is none
  bool as_it_stands = false;
};
Beside beside;

std::string with_host_separators(std::string_view text) {
  std::string path(text);
  std::replace(path.begin(), path.end(), suite_separator, host().separator());
  return path;
}

bool exists(const std::string& path) {
  return facts_at(path).kind != FileKind::none;
}

bool folder_exists(const std::string& path) {
  const std::size_t last = path.rfind(host().separator());
  if (last == std::string::npos) return false;
  return facts_at(path.substr(0, last + 1)).kind == FileKind::folder;
}

std::string folder_part(std::string_view text) {
  const std::size_t last = text.rfind(suite_separator);
  return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

}  // namespace

FileFacts facts_at(const std::string& path) {
  std::error_code reason;
  const FileFacts facts = host().look(path, reason);
  if (reason) stop_on_io_error("Prüfen"_w1252, path, reason);
  return facts;
}

std::string path_of_existing(std::string_view text) {
  std::string as_it_stands(trimmed(text));
  if (exists(as_it_stands)) return as_it_stands;
  std::string separated = with_host_separators(as_it_stands);
  return exists(separated) ? separated : as_it_stands;
}

std::string path_for_output(std::string_view text) {
  std::string as_it_stands(trimmed(text));
  std::string separated = with_host_separators(as_it_stands);
  if (!beside.folder.empty() && folder_part(as_it_stands) == beside.folder) {
    return beside.as_it_stands ? as_it_stands : separated;
  }
  if (exists(as_it_stands)) return as_it_stands;
  return exists(separated) || folder_exists(separated) ? separated : as_it_stands;
}

void keep_beside(std::string_view text) {
  const std::string name(trimmed(text));
  beside = {folder_part(name), exists(name)};
}

void reset_paths() {
  beside = {};
}

}  // namespace runtime
