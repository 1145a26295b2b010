#include <string>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "runtime/arguments.h"

namespace KV_Akum {
namespace {

constexpr std::string_view default_separators = " /";
constexpr std::int32_t too_many_names = -999;

// The fields between the cuts, as many as there are.
std::vector<std::string_view> split_at(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> fields;
  std::size_t begin = 0;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (separators.find(text[i]) == std::string_view::npos) continue;
    fields.push_back(text.substr(begin, i - begin));
    begin = i + 1;
  }
  fields.push_back(text.substr(begin));
  return fields;
}

std::vector<std::string_view> split_into_words(std::string_view text) {
  std::vector<std::string_view> words;
  for (const std::string_view field : split_at(text, " ")) {
    if (!field.empty()) words.push_back(field);
  }
  return words;
}

void store_names(const std::vector<std::string_view>& fields) {
  VariantList& list = variant_list;
  if (fields.size() > static_cast<std::size_t>(most_variants)) {
    list.VariantCount = too_many_names;
    return;
  }
  list.VariantCount = static_cast<std::int32_t>(fields.size());
  std::int32_t i = 0;
  for (const std::string_view field : fields) {
    ++i;
    list.VariantNames.at(i) = field;
    list.VariantNameLengths.at(i) = static_cast<std::int32_t>(list.VariantNames.at(i).trimmed().size());
  }
}

}  // namespace

VariantList variant_list;

CommandLine CommandLineText() {
  CommandLine buffer;
  for (int i = 1; i <= runtime::argument_count(); ++i) {
    const CommandLine argument(runtime::argument(i));
    std::string joined(buffer.trimmed());
    if (!joined.empty()) joined += ' ';
    buffer = joined.append(argument.view());
  }
  return buffer;
}

void StartUp(std::optional<std::string_view> separators, bool whole_line) {
  VariantList& list = variant_list;
  list.VariantNames = {};
  const CommandLine buffer = CommandLineText();
  const std::string_view line = buffer.trimmed();
  if (line.empty()) {
    list.VariantCount = 0;
  } else if (whole_line) {
    list.VariantNames.at(1) = line;
    list.VariantCount = 1;
    list.VariantNameLengths.at(1) = static_cast<std::int32_t>(line.size());
  } else if (separators == " ") {
    store_names(split_into_words(line));
  } else {
    store_names(split_at(line, separators.value_or(default_separators)));
  }
}

void reset() {
  variant_list = VariantList();
}

}  // namespace KV_Akum
