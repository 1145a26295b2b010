#include "KV_Schau/rules/context.h"

#include <fmt/format.h>

#include <algorithm>

#include "KV_Schau/network/order.h"
#include "KV_Schau/rules/unseen.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::rules {

using variant::FileId;

namespace {

template <class Test>
std::vector<std::uint32_t> lines_with(const variant::TextFile& file, const Test& test) {
  std::vector<std::uint32_t> lines;
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) {
    if (std::ranges::any_of(file.line(number), test)) lines.push_back(number);
  }
  return lines;
}

bool is_high(char character) {
  return static_cast<unsigned char>(character) >= 0x80;
}

bool may_hold_unseen(const variant::TextFile& file) {
  return file.has_control_bytes() ||
         (file.has_high_bytes() && file.bytes().find('\xA0') != std::string_view::npos);
}

}  // namespace

Context::Context(const variant::Variant& checked)
    : variant(checked),
      records(variant::find_records(checked)),
      network(network::link(checked)),
      order(network::flow_order(network)),
      taken(network::take_values(checked, records)),
      flow(network::accumulate(checked, network, order, records, taken)),
      fields(noteworthy_fields(checked)),
      near_elements(find_near_elements(checked, names_without_element(checked, network))) {
  for (const FileId id : input_files) {
    const variant::TextFile& file = checked.file(id);
    const auto position = static_cast<std::size_t>(id);
    if (file.has_high_bytes()) high_lines[position] = lines_with(file, is_high);
    if (may_hold_unseen(file)) unseen_lines[position] = lines_with(file, is_unseen);
  }
}

variant::NameKey Context::meant_by(variant::NameKey name) const {
  if (!similar_names_) similar_names_ = std::make_unique<const variant::SimilarNames>(variant.names);
  return similar_names_->meant_by(name);
}

std::string name_of(const Context& context, Element element) {
  return name_of(context, context.variant.names[element]);
}

std::string name_of(const Context& context, variant::NameKey name) {
  return variant::shown(variant::text_of(name), context.variant.file(FileId::sys).encoding());
}

std::string text_at(const Context& context, const variant::Place& place) {
  const variant::TextFile& file = context.variant.file(place.file);
  return variant::shown(
      variant::columns(file.line(place.line), place.column, place.column + place.length - 1),
      file.encoding());
}

std::string line_words(std::uint32_t line) {
  return fmt::format("Zeile {}", line);
}

std::string line_words(const Context& context, FileId file, std::uint32_t line) {
  return fmt::format("{}, Zeile {}", context.variant.file(file).shown(), line);
}

std::string number_words(double number) {
  return fmt::format("{:g}", number);
}

std::string area_words(double area) {
  return fmt::format("{:.3f} km²", area);
}

bool is_readable(const Context& context, FileId file) {
  const variant::TextFile& text = context.variant.file(file);
  return text.was_read() && text.encoding() != variant::Encoding::utf_16;
}

bool is_asked_for(const Context& context, FileId data_file) {
  const char type = variant::type_of_file(data_file);
  const auto& names = context.variant.names;
  return std::any_of(names.begin() + 1, names.end(),
                     [&](variant::NameKey name) { return variant::letter_of(name) == type; });
}

}  // namespace schau::rules
