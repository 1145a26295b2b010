#pragma once

#include <filesystem>
#include <string>

#include "tests/test_files.h"

// A large variant: a chain of reaches, a natural area of 10 km² beside each, two elements a link.

namespace chain {

/// The name of the element of that type in a link (1 .. 9999).
inline std::string name(char type, int link) {
  const std::string number = std::to_string(link);
  std::string text(1, type);
  text.append(4 - number.size(), '0');
  return text + number;
}

/// Writes the files of the variant at that path.
inline void write(const std::filesystem::path& base, int links) {
  std::string system;
  std::string areas;
  std::string reaches;
  for (int i = 1; i <= links; ++i) {
    const std::string area = name('N', i);
    const std::string reach = name('T', i);
    const std::string above = i > 1 ? name('T', i - 1) : std::string(5, ' ');
    const std::string below = i < links ? name('T', i + 1) : "ENDE";
    system.append(35, ' ').append(area).append(23, ' ').append(reach).append("\n");
    system.append(35, ' ').append(reach).append("   ").append(area).append(" ").append(above);
    system.append(9, ' ').append(below).append("\n");
    areas.append("   ").append(area).append("    10.\n");
    reaches.append("   ").append(reach).append(9, ' ').append("0").append(38, ' ').append("x\n");
    reaches.append("              8.25\n");
  }
  test_files::write_bytes(base.string() + ".sys", system);
  test_files::write_bytes(base.string() + ".nfl", areas);
  test_files::write_bytes(base.string() + ".trs", reaches);
}

}  // namespace chain
