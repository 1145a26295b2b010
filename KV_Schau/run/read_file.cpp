#include "KV_Schau/run/read_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "KV_Schau/run/reason.h"
#include "KV_Schau/run/whole_file.h"

namespace schau::run {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& file, const std::string& reason) {
  throw FileFault(fmt::format("{} kann nicht gelesen werden: {}", file.string(), reason));
}

}  // namespace

std::string read_file(const fs::path& file, std::uintmax_t most) {
  std::error_code fault;
  if (!fs::is_regular_file(file, fault)) refuse(file, fault ? reason_of(fault) : "keine gewöhnliche Datei");
  const std::uintmax_t size = fs::file_size(file, fault);
  if (fault) refuse(file, reason_of(fault));
  std::string bytes(std::min(size, most), '\0');
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream) refuse(file, reason_of({errno == 0 ? EIO : errno, std::generic_category()}));
  return bytes;
}

}  // namespace schau::run
