#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace schau::run {

/// Severity of a message in the catalogue.
enum class Level : std::uint8_t {
  note,   ///< warning or note: the areas are accumulated all the same
  error,  ///< no areas are accumulated, unless a later suppressed code has put the level back
  open    ///< its caller decided, and the protocol does not tell
};

/// A value that a message prints.
struct Argument {
  enum class Name : std::uint8_t { text1, text2, text3, int1, int2, int3, real1, real2 };
  Name name = Name::text1;
  std::string text{};  ///< as it is printed, without blanks around numbers; asterisks for a number too wide
};

/// One call of the dispatcher, as the protocol shows it.
struct Message {
  enum class Kind : std::uint8_t {
    entry,      ///< an entry of the catalogue
    undefined,  ///< "-Kommentar bei ... nicht definiert!": a code that its group does not know
    unknown     ///< lines that no entry writes; no code, level open
  };
  Kind kind = Kind::entry;
  std::string code{};
  Level level = Level::error;
  std::vector<Argument> arguments{};  ///< each once, in the order of the fields; also the word of a variant
  std::string text{};                 ///< its lines without the code, joined with single line feeds
  std::size_t line = 0;               ///< of the protocol, from 1
  std::size_t line_count = 0;
  bool more_follow = false;  ///< its closing line says that further ones were not written
  bool complete = true;      ///< false when the protocol ends before the message does

  /// The printed text of an argument; empty when the message does not print it.
  [[nodiscard]] std::string_view argument(Argument::Name name) const;
};

/// A protocol, NAME.pkl. All texts are the bytes of the file (Windows-1252).
struct Protocol {
  bool has_header = false;
  std::string label;  ///< behind "Prüfprotokoll: "
  std::vector<Message> messages;
  std::size_t line_count = 0;
  bool complete = true;  ///< the last line has its end and the last message all its lines
};

/// Reads a protocol by the formats of the message catalogue: each entry's literals and fields are its
/// grammar. What no entry could have written is kept as `unknown`. Blanks at the ends of lines do not count.
/// Linear in the bytes.
Protocol parse_protocol(std::string_view bytes);

}  // namespace schau::run
