#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "runtime/edit_output.h"
#include "runtime/format.h"

/// The message catalogue as data: a row is one entry, a group is a table of rows.
namespace m_WLM_error::catalogue {

/// The values that a message can print; the code always fills the first field.
enum class Argument : std::uint8_t { text1, text2, text3, int1, int2, int3, real1, real2 };
using enum Argument;

/// Severity of an entry.
enum class Level : std::int8_t { note = 1, error = 2, level_from_int1 = -1 };
using enum Level;

/// The counters that cap repeated warnings; "INIT" sets them to 0.
enum class Counter : std::uint8_t { W01, W02, W03, W04, T, P, none };
inline constexpr std::size_t counter_count = static_cast<std::size_t>(Counter::none);

/// When the first format of an entry, its heading, is written.
enum class Heading : std::uint8_t {
  always,
  on_new_structure,    ///< when text1 differs from the structure named last
  once_a_program_run,  ///< at the first call; the lines below it are written for the first ten calls
};

/// One row: an entry, or a further format of the entry above it.
struct Entry {
  static constexpr std::size_t most_arguments = 8;

  std::string_view code{};
  Level level = error;
  runtime::Format format{};
  std::array<Argument, most_arguments> arguments{};
  std::size_t argument_count = 0;
  bool continues = false;  ///< a further format of the entry above, without a code field
  Argument condition = text1;
  std::string_view condition_word{};  ///< empty: no condition
  Counter counter = Counter::none;
  runtime::Format closing{};  ///< written behind the fifth entry of a capped one
  Heading heading = Heading::always;

  /// A variant of a code, chosen when that text argument equals the word. Of the rows of one code the first
  /// whose condition holds is written; the last has none.
  [[nodiscard]] consteval Entry when(Argument argument, std::string_view word) const {
    Entry variant = *this;
    variant.condition = argument;
    variant.condition_word = word;
    return variant;
  }

  /// Five entries are written, the fifth followed by the closing line; later calls write nothing and still
  /// count at the entry's level.
  [[nodiscard]] consteval Entry capped(Counter calls, const runtime::Format& closing_line) const {
    Entry limited = *this;
    limited.counter = calls;
    limited.closing = closing_line;
    return limited;
  }

  [[nodiscard]] consteval Entry headed(Heading rule) const {
    Entry list = *this;
    list.heading = rule;
    return list;
  }
};

constexpr runtime::Value::Kind kind_of(Argument argument) {
  if (argument <= text3) return runtime::Value::Kind::text;
  return argument <= int3 ? runtime::Value::Kind::integer : runtime::Value::Kind::real;
}

/// True when the arguments, behind `leading` other fields, find a field of their kind in the format.
consteval bool arguments_fit(const runtime::Format& format, std::size_t leading,
                             std::span<const Argument> arguments) {
  if (leading + arguments.size() > format.fields()) return false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!runtime::fits(format.field(leading + i), kind_of(arguments[i]))) return false;
  }
  return true;
}

/// A catalogue entry. The first field of the format receives the code, the arguments fill the next ones; an
/// argument too many or of the wrong kind does not compile.
template <runtime::SourceText notation>
consteval Entry entry(std::string_view code, Level level, auto... arguments) {
  Entry row{.code = code,
            .level = level,
            .format = runtime::format<notation>,
            .arguments = {arguments...},
            .argument_count = sizeof...(arguments)};
  if (!arguments_fit(row.format, 1, {row.arguments.data(), row.argument_count}))
    throw "argument without a field";
  return row;
}

/// A further format of the entry above: list lines and closing texts. It has no field for the code.
template <runtime::SourceText notation>
consteval Entry then(auto... arguments) {
  Entry row{.format = runtime::format<notation>,
            .arguments = {arguments...},
            .argument_count = sizeof...(arguments),
            .continues = true};
  if (!arguments_fit(row.format, 0, {row.arguments.data(), row.argument_count}))
    throw "argument without a field";
  return row;
}

/// The closing line of a capped entry.
template <runtime::SourceText notation>
inline constexpr const runtime::Format& closing = runtime::format<notation>;

/// The entries of one group and the level at which it writes codes that it does not know. A group stands
/// below its entries and is named once more in the order of routing.
struct Group {
  std::string_view prefix;  ///< the beginning of the codes that are routed to the group
  std::string_view about;   ///< what its messages are about, in English, for the reference of the messages
  std::span<const Entry> entries;
  Level default_level = error;
};

/// The group of a code: the first in the order of routing whose prefix the code begins with; null when there
/// is none. Case matters.
const Group* group_of(std::string_view code);

/// All groups in the order of routing.
std::span<const Group* const> groups();

/// The values of one call, texts without their trailing blanks.
struct Values {
  std::string_view code;
  std::array<std::string_view, 3> texts;
  std::array<std::int32_t, 3> integers{};
  std::array<float, 2> reals{};

  [[nodiscard]] std::string_view text(Argument argument) const {
    return texts[static_cast<std::size_t>(argument)];
  }
  [[nodiscard]] runtime::Value value(Argument argument) const;
};

/// The entry that a call selects and the further formats below it; empty when the group does not know the
/// code.
std::span<const Entry> find_entry(const Group& group, const Values& values);

}  // namespace m_WLM_error::catalogue
