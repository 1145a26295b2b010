#include "KV_Schau/run/work_folder.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <system_error>
#include <vector>

#include "KV_Schau/run/reason.h"
#include "KV_Schau/run/whole_file.h"

namespace schau::run {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> input_extensions = {".sys", ".nfl", ".kfl", ".trs", ".ver"};
constexpr std::string_view suppression_list = "fehlercode.ex";

std::vector<std::string> input_names(const std::string& variant) {
  std::vector<std::string> names;
  names.reserve(input_extensions.size() + 1);
  for (const std::string_view extension : input_extensions) names.push_back(variant + std::string(extension));
  names.emplace_back(suppression_list);
  return names;
}

// A symbolic link where the host has them, else a second name, else a copy.
void make_available(const fs::path& input, const fs::path& in_folder) {
  std::error_code fault;
  fs::create_symlink(fs::path("..") / input.filename(), in_folder, fault);
  if (fault) fs::create_hard_link(input, in_folder, fault);
  if (fault) fs::copy_file(input, in_folder, fault);
  if (!fault) return;
  throw FileFault(
      fmt::format("{} kann nicht in den Arbeitsordner gelegt werden: {}", input.string(), reason_of(fault)));
}

bool is_file(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(fs::symlink_status(path, ignored));
}

}  // namespace

WorkFolder::OwnFolder::OwnFolder(const variant::VariantPath& variant)
    : path(variant.folder / unused_name(variant.name + ".lauf-")) {
  std::error_code fault;
  if (fs::create_directory(path, fault)) return;
  throw FileFault(fmt::format("Im Ordner {} kann kein Arbeitsordner angelegt werden: {}",
                              fs::absolute(variant.folder).lexically_normal().string(), reason_of(fault)));
}

WorkFolder::OwnFolder::~OwnFolder() {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

WorkFolder::WorkFolder(const variant::VariantPath& path) : variant_(path), folder_(path) {
  for (const std::string& name : input_names(variant_.name)) {
    const fs::path input = variant_.folder / name;
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(input, ignored))) make_available(input, folder_.path / name);
  }
}

fs::path WorkFolder::file(std::string_view extension) const {
  return folder_.path / (variant_.name + std::string(extension));
}

std::uintmax_t WorkFolder::protocol_size() const {
  const std::string protocol = variant_.name + ".pkl";
  std::uintmax_t bytes = 0;
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path, ignored)) {
    if (entry.path().filename().string().find(protocol) == std::string::npos) continue;
    const std::uintmax_t size = entry.file_size(ignored);
    if (!ignored) bytes += size;
  }
  return bytes;
}

// Where a file of the run belongs.
fs::path WorkFolder::place_of(const fs::path& file) const {
  return variant_.folder / file.filename();
}

void WorkFolder::require_places(const Files& files) const {
  if (files.listing && is_file(listing())) require_place(place_of(listing()));
  if (is_file(file(".pkl"))) require_place(place_of(file(".pkl")));
  if (!files.result) return;
  const fs::path place = place_of(file(".Akum"));
  for (const std::string& name : input_names(variant_.name)) {
    std::error_code ignored;
    if (!fs::equivalent(place, variant_.folder / name, ignored)) continue;
    throw FileFault(
        fmt::format("{} und {} sind dieselbe Datei; sie bleibt, wie sie ist", place.string(), name));
  }
  require_place(place);
}

void WorkFolder::bring_protocol() const {
  const fs::path protocol = file(".pkl");
  const fs::path place = place_of(protocol);
  if (is_file(protocol)) return put_in_place(protocol, place);
  // A variant of the listing's name has its listing there.
  std::error_code fault;
  if (protocol == listing() || !fs::is_regular_file(place, fault)) return;
  fs::remove(place, fault);
  if (fault)
    throw FileFault(fmt::format("{} kann nicht gelöscht werden: {}", place.string(), reason_of(fault)));
}

void WorkFolder::bring(const Files& files) const {
  require_places(files);
  if (files.listing && is_file(listing())) put_in_place(listing(), place_of(listing()));
  bring_protocol();
  if (files.result) put_in_place(file(".Akum"), place_of(file(".Akum")));
}

}  // namespace schau::run
