#include "KV_Schau/mend/diff.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::mend {
namespace {

using variant::TextFile;

enum class Sign : char { kept = ' ', removed = '-', added = '+' };

struct DiffLine {
  Sign sign = Sign::kept;
  std::uint32_t old_number = 0;  // of a removed or kept line
  std::size_t position = 0;      // of an added line in the new file
};

// The lines of both files in the order of a diff: what is removed stands before what is added in its place.
class Script {
 public:
  Script(const MendedFile& file, const TextFile& old) : file_(file), old_(old) {
    for (std::size_t position = 0; position < file.lines.size(); ++position) take(position);
    remove_before(old.line_count() + 1);
    flush();
  }

  [[nodiscard]] const std::vector<DiffLine>& lines() const { return lines_; }

 private:
  void take(std::size_t position) {
    const Line& line = file_.lines[position];
    if (line.moved) {
      added_.push_back({Sign::added, 0, position});
      return;
    }
    remove_before(line.old_number);
    next_old_ = line.old_number + 1;
    if (looks_the_same(line)) {
      flush();
      lines_.push_back({Sign::kept, line.old_number, position});
      return;
    }
    lines_.push_back({Sign::removed, line.old_number, 0});
    added_.push_back({Sign::added, 0, position});
  }

  [[nodiscard]] bool looks_the_same(const Line& line) const {
    const std::string_view old_text = without_mark(line.old_number);
    if (old_text == line.text) return true;
    return old_.encoding() != file_.encoding &&
           variant::shown(old_text, old_.encoding()) == variant::shown(line.text, file_.encoding);
  }

  [[nodiscard]] std::string_view without_mark(std::uint32_t number) const {
    std::string_view text = old_.line(number);
    if (number == 1) text.remove_prefix(variant::byte_order_mark_length(text));
    return text;
  }

  void remove_before(std::uint32_t number) {
    for (; next_old_ < number; ++next_old_) {
      // The rest of a doubled line end is no line to those who look at the text.
      if (!is_rest_of_end(next_old_)) lines_.push_back({Sign::removed, next_old_, 0});
    }
  }

  [[nodiscard]] bool is_rest_of_end(std::uint32_t number) const {
    return number > 1 && old_.line(number).empty() && old_.line_end(number) == variant::LineEnd::crlf &&
           old_.line_end(number - 1) == variant::LineEnd::cr;
  }

  void flush() {
    std::ranges::move(added_, std::back_inserter(lines_));
    added_.clear();
  }

  const MendedFile& file_;
  const TextFile& old_;
  std::vector<DiffLine> lines_;
  std::vector<DiffLine> added_;
  std::uint32_t next_old_ = 1;
};

constexpr std::size_t context = 3;

class DiffWriter {
 public:
  DiffWriter(std::string& out, const MendedFile& file, const TextFile& old, const DiffColours& colours)
      : out_(out), file_(file), old_(old), colours_(colours), script_(file, old) {}

  void run() {
    const std::vector<DiffLine>& lines = script_.lines();
    for (std::size_t k = 0; k < lines.size(); ++k) {
      if (lines[k].sign == Sign::kept) continue;
      const std::size_t first = k - std::min(k, context);
      std::size_t last = k;
      for (std::size_t next = k + 1; next < lines.size() && next <= last + 2 * context + 1; ++next) {
        if (lines[next].sign != Sign::kept) last = next;
      }
      write_hunk(first, std::min(last + context + 1, lines.size()));
      k = last;
    }
  }

 private:
  void write_heading() {
    fmt::format_to(std::back_inserter(out_), "{0}--- {1}\n+++ {1} (gerichtet){2}\n", colours_.heading,
                   old_.shown(), colours_.off);
    has_heading_ = true;
  }

  void write_hunk(std::size_t first, std::size_t end) {
    if (!has_heading_) write_heading();
    count_lines_before(first);
    std::size_t old_count = 0;
    std::size_t new_count = 0;
    for (std::size_t k = first; k < end; ++k) {
      old_count += script_.lines()[k].sign == Sign::added ? 0 : 1;
      new_count += script_.lines()[k].sign == Sign::removed ? 0 : 1;
    }
    fmt::format_to(std::back_inserter(out_), "{}@@ -{},{} +{},{} @@{}\n", colours_.place, old_before_ + 1,
                   old_count, new_before_ + 1, new_count, colours_.off);
    for (std::size_t k = first; k < end; ++k) write_line(script_.lines()[k]);
  }

  // How many lines of each file stand before a line of the script.
  void count_lines_before(std::size_t end) {
    for (; counted_ < end; ++counted_) {
      old_before_ += script_.lines()[counted_].sign == Sign::added ? 0 : 1;
      new_before_ += script_.lines()[counted_].sign == Sign::removed ? 0 : 1;
    }
  }

  void write_line(const DiffLine& line) {
    const bool is_added = line.sign == Sign::added;
    const std::string text = is_added ? variant::shown(file_.lines[line.position].text, file_.encoding)
                                      : variant::shown(old_.line(line.old_number), old_.encoding());
    const std::string_view colour = is_added                     ? colours_.added
                                    : line.sign == Sign::removed ? colours_.removed
                                                                 : std::string_view();
    out_.append(colour).append(1, static_cast<char>(line.sign)).append(text);
    out_.append(colour.empty() ? "" : colours_.off).append("\n");
  }

  std::string& out_;
  const MendedFile& file_;
  const TextFile& old_;
  const DiffColours& colours_;
  Script script_;
  std::size_t counted_ = 0;
  std::size_t old_before_ = 0;
  std::size_t new_before_ = 0;
  bool has_heading_ = false;
};

}  // namespace

void append_diff(std::string& out, const MendedFile& file, const TextFile& old, const DiffColours& colours) {
  if (file.is_changed()) DiffWriter(out, file, old, colours).run();
}

std::string summary(const MendedFile& file) {
  static constexpr std::array<std::string_view, repair_count> words = {"von UTF-8 in Windows-1252",
                                                                       "mit anderem Zeilenende",
                                                                       "mit doppeltem Zeilenende",
                                                                       "mit Tabulatoren",
                                                                       "mit Dezimalkomma",
                                                                       "mit Leerzeichen am Ende",
                                                                       "hinter ihre Zuläufe gestellt"};
  std::string text;
  for (std::size_t i = 0; i < repair_count; ++i) {
    const std::uint32_t number = file.changes.at(i);
    if (number == 0) continue;
    text += fmt::format("{}{} {} {}", text.empty() ? "" : ", ", number, number == 1 ? "Zeile" : "Zeilen",
                        words.at(i));
  }
  return text;
}

}  // namespace schau::mend
