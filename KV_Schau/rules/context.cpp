#include "KV_Schau/rules/context.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "KV_Schau/network/order.h"
#include "KV_Schau/rules/unseen.h"
#include "KV_Schau/variant/shown_text.h"
#include "m_System/element_types.h"

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

// An inflow stands above, names the element as an outflow, and is named once.
bool has_regular_inflow(const Context& context, Element i, std::size_t k) {
  const auto& inflow = context.network.inflow[i];
  const Element j = inflow[k];
  if (!context.network.given[i].inflow[k]) return true;
  const bool repeated = (k > 0 && inflow[0] == j) || (k > 1 && inflow[1] == j);
  return j != 0 && j < i && !repeated && context.network.names_outflow(j, i);
}

// No branching or basin, and nothing is missing, too much, out of order or named by one end alone.
bool is_regular(const Context& context, Element i) {
  const m_System::ElementType& type = m_System::type_of(context.variant.type(i));
  const network::Network::Given& given = context.network.given[i];
  if (type.is_structure() || !given.outflow[0] || given.outflow[1]) return false;
  const Element below = context.network.outflow[i][0];
  const bool drains_down = below > i && context.network.names_inflow(below, i);
  if (!drains_down && i != context.network.outlet()) return false;
  if (type.is_source()) return !given.inflow[0] && !given.inflow[1] && !given.inflow[2];
  return given.inflow[0] && has_regular_inflow(context, i, 0) && has_regular_inflow(context, i, 1) &&
         has_regular_inflow(context, i, 2);
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
  gather_elements();
  gather_records();
  gather_lines();
}

void Context::gather_elements() {
  for (Element i = 1; i <= network.count(); ++i) {
    if (!is_regular(*this, i)) noteworthy.push_back(i);
  }
}

void Context::gather_records() {
  for (Element i = 1; i <= network.count(); ++i) {
    const char type = variant.type(i);
    ++type_counts[static_cast<unsigned char>(type)];
    const std::optional<FileId> file = variant::data_file_of(type);
    if (!file || !is_readable(*this, *file)) continue;
    if (records.line[i] == 0) {
      without_record.push_back(i);
    } else if (type == 'T' && network::is_kind_2(variant.file(FileId::trs).line(records.line[i]))) {
      kind_2_reaches.push_back(i);
    }
  }
}

void Context::gather_lines() {
  for (const FileId id : input_files) {
    const variant::TextFile& file = variant.file(id);
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
  return fmt::format("{:.10g}", number);
}

std::string area_words(double area) {
  return fmt::format("{:.3f} km²", area);
}

bool is_readable(const Context& context, FileId file) {
  const variant::TextFile& text = context.variant.file(file);
  return text.was_read() && text.encoding() != variant::Encoding::utf_16;
}

std::uint32_t users_of(const Context& context, FileId data_file) {
  return context.type_counts[static_cast<unsigned char>(variant::type_of_file(data_file))];
}

bool is_asked_for(const Context& context, FileId data_file) {
  return users_of(context, data_file) > 0;
}

}  // namespace schau::rules
