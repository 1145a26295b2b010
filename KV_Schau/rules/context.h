#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/rules/fields.h"
#include "KV_Schau/rules/near_elements.h"
#include "KV_Schau/variant/names.h"
#include "KV_Schau/variant/records.h"
#include "KV_Schau/variant/variant.h"

namespace schau::rules {

/// What the rules ask: the variant and the facts that several of them need, gathered once.
struct Context {
  explicit Context(const variant::Variant& checked);

  const variant::Variant& variant;
  variant::Records records;
  network::Network network;
  std::vector<Element> order;
  std::vector<network::Taken> taken;
  network::Flow flow;
  std::vector<Field> fields;
  /// The elements that a rule about fields or links has something to say about, in system order: all
  /// branchings and basins, and whatever has not just the fields and links of its type, both ends named, in
  /// order.
  std::vector<Element> noteworthy;
  /// The elements that have no record in a file that was read, in system order.
  std::vector<Element> without_record;
  /// The reaches whose record goes on in the next line, in system order.
  std::vector<Element> kind_2_reaches;
  /// The number of elements of each type, by its letter.
  std::array<std::uint32_t, 256> type_counts{};
  NearElements near_elements;
  /// By input file: the lines with a byte above 127, and those with a control character or a non-breaking
  /// blank, in file order.
  std::array<std::vector<std::uint32_t>, 5> high_lines;
  std::array<std::vector<std::uint32_t>, 5> unseen_lines;

  /// What a name that no element bears was meant to be, among all names of the variant; 0 when that is not
  /// clear. The index is made at the first question.
  [[nodiscard]] variant::NameKey meant_by(variant::NameKey name) const;

 private:
  void gather_elements();
  void gather_records();
  void gather_lines();

  mutable std::unique_ptr<const variant::SimilarNames> similar_names_;
};

/// The name of an element as people read it.
std::string name_of(const Context& context, Element element);
std::string name_of(const Context& context, variant::NameKey name);

/// The text at a place, for quoting.
std::string text_at(const Context& context, const variant::Place& place);

/// The number of a line and the name of its file: "Zeile 7", "rausel.kfl, Zeile 7".
std::string line_words(std::uint32_t line);
std::string line_words(const Context& context, variant::FileId file, std::uint32_t line);

/// A number as it would be written in a file, with as few digits as it takes: 64.5.
std::string number_words(double number);

/// An area in km² with three decimals.
std::string area_words(double area);

/// The five files of a variant, in the order in which a run reads them.
inline constexpr std::array<variant::FileId, 5> input_files = {variant::FileId::sys, variant::FileId::nfl,
                                                               variant::FileId::kfl, variant::FileId::trs,
                                                               variant::FileId::ver};

/// True when a file was read and is not in UTF-16, in which nothing can be found.
bool is_readable(const Context& context, variant::FileId file);

/// The number of elements whose records a file holds.
std::uint32_t users_of(const Context& context, variant::FileId data_file);

/// True when the run reads a file: the system has elements of its type.
bool is_asked_for(const Context& context, variant::FileId data_file);

}  // namespace schau::rules
