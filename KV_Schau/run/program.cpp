#include "KV_Schau/run/program.h"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/system/error_code.hpp>
#include <system_error>

// Does not include all that it needs.
#include <boost/process/search_path.hpp>

namespace schau::run {
namespace {

namespace fs = std::filesystem;

// In the given folder, with the extension that programs have on this host.
fs::path in_folder(const fs::path& folder) {
  return boost::process::search_path("KV_Akum", {folder});
}

fs::path own_folder() {
  std::error_code unknown;
  const fs::path program = boost::dll::program_location(unknown);
  return unknown ? fs::path() : program.parent_path();
}

}  // namespace

std::optional<fs::path> find_program() {
  fs::path found = in_folder(own_folder());
  if (found.empty()) return find_in_path("KV_Akum");
  return fs::absolute(found);
}

std::optional<fs::path> find_in_path(const std::string& name) {
  const fs::path found = boost::process::search_path(name);
  if (found.empty()) return std::nullopt;
  return fs::absolute(found);
}

}  // namespace schau::run
