#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>

namespace schau::variant {

/// A variant as the host knows it. KV_Akum is started in `folder` with the argument `name`, so that folders
/// may be of any length and hold blanks.
struct VariantPath {
  std::filesystem::path folder;  ///< "." when the argument names none
  std::string name;              ///< of the variant's files, without folder and extension
  std::string shown;             ///< the argument without ".sys": what stands before an extension in texts
};

/// Why an argument is no variant.
struct Refusal {
  enum class Kind : std::uint8_t {
    unusable,  ///< a name that KV_Akum cannot take
    missing    ///< there is no such system file
  };
  Kind kind = Kind::unusable;
  std::string reason;   ///< a German sentence without its full stop
  std::string way_out;  ///< the same; empty when there is none to tell
};

/// The longest name, in bytes: with the extension of the protocol it fills the 120 characters that the
/// suite keeps of the protocol's path. Its other file names have 200.
inline constexpr std::size_t longest_name = 116;

/// The variant that an ordinary path names, relative or absolute, with or without ".sys"; or why it names
/// none. A name that KV_Akum would cut or take for several words is refused before the file is looked for.
std::variant<VariantPath, Refusal> resolve(const std::string& argument);

/// The same for a variant that is still to be written: its files may be there or not.
std::variant<VariantPath, Refusal> resolve_new(const std::string& argument);

}  // namespace schau::variant
