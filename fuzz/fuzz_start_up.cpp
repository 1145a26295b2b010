// The command line: any arguments, one a line behind a first line that says how they are cut: "w" as one
// name, "s" and the separators, or by default.

#include <algorithm>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "fuzz/fuzz_bed.h"
#include "runtime/arguments.h"
#include "runtime/fixed_text.h"

namespace {

using KV_Akum::command_line_width;
using KV_Akum::variant_list;

std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    // What the system hands over ends at a NUL.
    const std::string_view line = text.substr(0, end);
    lines.emplace_back(line.substr(0, line.find('\0')));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string without_trailing_blanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

// Blanks join the arguments where there is something to join.
std::string joined_line(const std::vector<std::string>& arguments) {
  std::string line;
  for (const std::string& argument : arguments) {
    line = without_trailing_blanks(line);
    if (!line.empty()) line += ' ';
    line += argument.substr(0, command_line_width);
    line = without_trailing_blanks(line.substr(0, command_line_width));
  }
  return line;
}

// A separator at the very end of the line stays in its name.
std::vector<std::string> cut(const std::string& line, std::string_view separators) {
  std::vector<std::string> names(1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (i + 1 < line.size() && separators.find(line[i]) != std::string_view::npos) {
      names.emplace_back();
    } else {
      names.back() += line[i];
    }
  }
  return names;
}

std::vector<std::string> expected_names(const std::string& line, std::string_view separators) {
  std::vector<std::string> names = cut(line, separators);
  if (separators == " ") std::erase(names, "");
  return names;
}

void require_names(const std::vector<std::string>& names) {
  if (names.size() > static_cast<std::size_t>(KV_Akum::most_variants)) {
    fuzz_bed::require(variant_list.VariantCount == -999, "too many names are told");
    return;
  }
  fuzz_bed::require(variant_list.VariantCount == static_cast<std::int32_t>(names.size()), "all names count");
  std::int32_t i = 0;
  for (const std::string& name : names) {
    const KV_Akum::VariantName& stored = variant_list.VariantNames.at(++i);
    fuzz_bed::require(stored == KV_Akum::VariantName(name), "each name is that between its separators");
    fuzz_bed::require(
        variant_list.VariantNameLengths.at(i) == static_cast<std::int32_t>(stored.trimmed().size()),
        "the length is that of the name");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const fuzz_bed::Bed bed;
  // The first line stands in the place of the program's own name.
  const std::vector<std::string> arguments = lines_of(fuzz_bed::text_of(bytes, size));
  if (arguments.empty()) return 0;
  const std::string& mode = arguments.front();
  std::vector<const char*> values;
  values.reserve(arguments.size());
  for (const std::string& argument : arguments) values.push_back(argument.c_str());
  runtime::set_arguments(static_cast<int>(values.size()), values.data());
  const std::string line = joined_line({arguments.begin() + 1, arguments.end()});
  fuzz_bed::require(KV_Akum::CommandLineText() == line, "the arguments are joined with single blanks");
  const bool whole = mode.starts_with('w');
  std::optional<std::string_view> separators;
  if (mode.starts_with('s')) separators = std::string_view(mode).substr(1);
  KV_Akum::StartUp(separators, whole);
  if (line.empty()) {
    fuzz_bed::require(variant_list.VariantCount == 0, "nothing names no variant");
  } else if (whole) {
    fuzz_bed::require(variant_list.VariantCount == 1, "the line is one name");
    fuzz_bed::require(variant_list.VariantNames.at(1) == KV_Akum::VariantName(line), "the name is the line");
  } else {
    require_names(expected_names(line, separators.value_or(" /")));
  }
  return 0;
}
