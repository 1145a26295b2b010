#include <fmt/format.h>

#include <filesystem>
#include <memory>

#include "KV_Schau/mend/mend.h"
#include "KV_Schau/run/whole_file.h"

namespace schau::mend {
namespace {

namespace fs = std::filesystem;
using variant::TextFile;

struct Place {
  fs::path path;
  std::string shown;
};

Place place_of(const variant::Variant& variant, const MendedFile& file) {
  return {variant::path_of(variant.path, file.id), variant.file(file.id).shown()};
}

// A copy of something else is somebody's last chance.
void require_no_other_copy(const Place& copy, std::string_view bytes) {
  const TextFile older = TextFile::read(copy.path, copy.shown);
  if (older.state() == variant::FileState::missing || (older.was_read() && older.bytes() == bytes)) return;
  throw run::FileFault(fmt::format(
      "{} gibt es schon, mit anderem Inhalt; --sicherung-ersetzen überschreibt die Datei", copy.shown));
}

}  // namespace

std::vector<std::string> write(const Mended& mended, const variant::Variant& variant, bool replace_older) {
  std::vector<std::unique_ptr<run::WholeFile>> files;
  std::vector<std::string> names;
  const auto add = [&](const Place& place, std::string_view bytes) {
    files.push_back(std::make_unique<run::WholeFile>(place.path));
    files.back()->stream() << bytes;
    names.push_back(place.shown);
  };
  // The copies first: no old file goes before its copy is complete.
  for (const MendedFile& file : mended.files) {
    if (!file.is_changed()) continue;
    Place copy = place_of(variant, file);
    copy.path += "~";
    copy.shown += "~";
    const std::string_view bytes = variant.file(file.id).bytes();
    if (!replace_older) require_no_other_copy(copy, bytes);
    add(copy, bytes);
  }
  for (const MendedFile& file : mended.files) {
    if (file.is_changed()) add(place_of(variant, file), bytes_of(file));
  }
  run::commit_all(files);
  return names;
}

}  // namespace schau::mend
