// The listing of a folder: the first line is the filter, the rest what the command interpreter's "dir" wrote.

#include <algorithm>
#include <system_error>

#include "fuzz/fuzz_bed.h"
#include "m_files/m_files.h"
#include "tests/forwarding_host.h"

namespace {

constexpr std::string_view listing_path = "D:\\\\files.lis";

// A machine of the suite, with one folder, in which the listing stands.
class SuiteMachine final : public ForwardingHost {
 public:
  [[nodiscard]] char separator() const override { return '\\'; }
  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    if (path == "D:\\") return {.kind = runtime::FileKind::folder};
    return ForwardingHost::look(path, reason);
  }
};

std::string upper(std::string_view text) {
  std::string changed(text);
  m_files::to_upper(changed);
  return changed;
}

// What every match has in common, whatever stands between the wildcards.
void require_match(std::string_view filter, std::string_view name) {
  const std::string wanted = upper(filter.substr(0, filter.find_last_not_of(' ') + 1));
  const std::string shown = upper(name);
  std::string piece;
  for (const char character : wanted + "*") {
    if (character != '*' && character != '?') {
      piece += character;
      continue;
    }
    fuzz_bed::require(shown.find(piece) != std::string::npos, "a name holds every piece of the filter");
    piece.clear();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzz_bed::text_of(bytes, size);
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view filter = text.substr(0, end);
  const std::string_view listing = text.substr(std::min(end + 1, text.size()));
  fuzz_bed::Bed bed;
  bed.put(std::string(listing_path), listing);
  const SuiteMachine machine;
  m_files::ErrorText error;
  const std::int32_t count = m_files::list_files("D:\\", filter, error);
  fuzz_bed::require(count == m_files::file_list.names.size() && count == m_files::file_list.numbers.size(),
                    "the list has as many entries as are told");
  fuzz_bed::require(error.blank() || count == 0, "a message goes with an empty list");
  const auto lines = std::ranges::count_if(listing, [](char byte) { return byte == '\n' || byte == '\r'; });
  fuzz_bed::require(count <= lines, "a line gives one name at most, the first one none");
  for (std::int32_t i = 1; i <= count; ++i) {
    const m_files::FileName& name = m_files::file_list.names.at(i);
    fuzz_bed::require(listing.find(name.trimmed()) != std::string_view::npos, "a name stands in the listing");
    require_match(filter, name.trimmed());
  }
  return 0;
}
