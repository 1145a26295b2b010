#include "KV_Schau/picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <system_error>
#include <vector>

#include "KV_Schau/run/process.h"
#include "KV_Schau/run/program.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau {
namespace {

namespace fs = std::filesystem;

std::string extension_of(const fs::path& file) {
  std::string extension = file.extension().string();
  std::ranges::transform(extension, extension.begin(), [](char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  });
  return extension;
}

// A file beside the target that is gone in the end, however that comes about.
class Unfinished {
 public:
  Unfinished(const fs::path& target, std::string_view extension)
      : path_(target.parent_path() / run::unused_name(".kv_schau-").append(extension)) {}
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;
  Unfinished(Unfinished&&) = delete;
  Unfinished& operator=(Unfinished&&) = delete;
  ~Unfinished() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void write_whole(std::string_view bytes, const fs::path& path) {
  run::WholeFile file(path);
  file.stream() << bytes;
  file.commit();
}

// Twice the size is sharp on today's screens and on paper. A surface of the library behind rsvg-convert has
// at most 32767 points a side, and a picture of more than so many points opens nowhere.
double zoom_of_png(const PictureSize& size) {
  constexpr double usual = 2.0;
  constexpr double longest_side = 32000.0;
  constexpr double most_points = 64e6;
  return std::min({usual, longest_side / std::max(size.width, size.height),
                   std::sqrt(most_points / (size.width * size.height))});
}

// A page of more than 200 inches is beyond what readers of PDF show.
double zoom_of_pdf(const PictureSize& size) {
  constexpr double longest_side = 200.0 * 96.0;
  return std::min(1.0, longest_side / std::max(size.width, size.height));
}

void convert(const fs::path& converter, const fs::path& svg, const fs::path& target, std::string_view format,
             double zoom) {
  std::string words;
  const auto take = [&](std::string_view bytes) { words += bytes; };
  const run::Ending ending = run::run_process(
      {converter,
       {"--unlimited", fmt::format("--format={}", format), fmt::format("--zoom={:.4f}", zoom), "--output",
        fs::absolute(target).string(), fs::absolute(svg).string()},
       fs::current_path()},
      take, take, run::end_requested);
  if (ending.kind == run::Ending::Kind::exited && ending.exit_status == 0) return;
  words.erase(std::min(words.size(), words.find_last_not_of("\r\n") + 1));
  throw run::FileFault(fmt::format("rsvg-convert hat aus dem Plan kein Bild gemacht{}{}",
                                   words.empty() ? "" : ": ", variant::shown_utf8(words)));
}

}  // namespace

bool names_picture(const fs::path& file) {
  const std::string extension = extension_of(file);
  return extension == ".svg" || extension == ".png" || extension == ".pdf";
}

std::string write_picture(std::string_view svg, const PictureSize& size, const fs::path& file) {
  const std::string extension = extension_of(file);
  if (extension == ".svg") {
    write_whole(svg, file);
    return {};
  }
  const std::optional<fs::path> converter = run::find_in_path("rsvg-convert");
  if (!converter) {
    throw run::FileFault(
        "Für PNG und PDF fehlt das Programm rsvg-convert (unter Debian im Paket librsvg2-bin); als .svg geht "
        "es ohne");
  }
  run::WholeFile place(file);  // or a fault that names the file
  const Unfinished drawing(file, ".svg");
  const Unfinished picture(file, extension);
  write_whole(svg, drawing.path());
  const bool is_png = extension == ".png";
  const double zoom = is_png ? zoom_of_png(size) : zoom_of_pdf(size);
  convert(*converter, drawing.path(), picture.path(), is_png ? "png" : "pdf", zoom);
  run::put_in_place(picture.path(), file);
  if (zoom >= 1.0) return {};
  return fmt::format(
      "Der Plan ist auf {:.0f} % verkleinert, damit er in die Datei passt; als .svg behält er "
      "seine Größe",
      100.0 * zoom);
}

}  // namespace schau
