#pragma once

#include <string>
#include <vector>

#include "KV_Schau/import/build.h"
#include "KV_Schau/import/net_table.h"
#include "KV_Schau/import/variant_text.h"
#include "KV_Schau/variant/path.h"

/// From a table of a river network, as geographic information systems export it, to the files of a variant.
namespace schau::imports {

/// What came of a table.
struct Import {
  NetTable table;  ///< with faults it was not taken; nothing else is filled then
  std::vector<Element> elements;
  VariantText text;

  [[nodiscard]] bool was_taken() const { return table.fault_count == 0; }
};

/// Reads a table and builds the variant in memory. Several outlets are a fault unless they are to be joined.
/// The file must outlive the import.
Import import_table(const variant::TextFile& file, bool join_outlets);

/// The names of the files that stand where a variant would be written, in texts.
std::vector<std::string> standing_files(const variant::VariantPath& path);

/// Writes the files of a variant that was taken: all of them, or none when one cannot be written. Returns
/// their names. Throws run::FileFault.
std::vector<std::string> write_files(const Import& import, const variant::VariantPath& path);

/// What there is to say about an import that was taken: a German text.
std::string text_of(const Import& import, const std::string& variant_name);

/// The faults, one a line, in the form that editors jump to.
std::string faults_text(const NetTable& table);

}  // namespace schau::imports
