// The message catalogue with any codes and arguments. A call takes from the input: which entry, which of the
// arguments are there, and their values; a code that no entry has is taken as it stands.

#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_bed.h"
#include "m_WLM_error/catalogue/entry.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/units.h"
#include "tests/variant_files.h"

namespace {

using m_WLM_error::MessageArguments;

std::vector<std::string_view> all_codes() {
  std::vector<std::string_view> codes;
  for (const auto* const group : m_WLM_error::catalogue::groups()) {
    for (const auto& entry : group->entries) {
      if (!entry.code.empty()) codes.push_back(entry.code);
    }
  }
  return codes;
}

class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}
  [[nodiscard]] bool done() const { return rest_.empty(); }

  template <class Number>
  Number number() {
    Number value{};
    const std::string_view bytes = take(sizeof(value));
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  /// Up to 255 bytes, without line ends: the lines of the protocol are counted.
  std::string text() {
    std::string taken(take(number<std::uint8_t>()));
    std::ranges::replace(taken, '\n', ' ');
    return taken;
  }

 private:
  std::string_view take(std::size_t count) {
    const std::string_view bytes = rest_.substr(0, count);
    rest_.remove_prefix(bytes.size());
    return bytes;
  }
  std::string_view rest_;
};

std::string code_of(Input& input) {
  static const std::vector<std::string_view> codes = all_codes();
  const std::size_t number = input.number<std::uint16_t>() % (codes.size() + 8);
  return number < codes.size() ? std::string(codes[number]) : input.text();
}

bool reserved(std::string_view code) {
  return runtime::equal_padded(code, "INIT") || runtime::equal_padded(code, "FINALE") ||
         runtime::equal_padded(code, "ErrorLevel");
}

void send(Input& input, std::int32_t& highest) {
  const std::string code = code_of(input);
  if (reserved(code)) return;
  const unsigned given = input.number<std::uint8_t>();
  const std::array<std::string, 3> texts = {input.text(), input.text(), input.text()};
  MessageArguments arguments;
  if ((given & 1U) != 0) arguments.text1 = texts[0];
  if ((given & 2U) != 0) arguments.text2 = texts[1];
  if ((given & 4U) != 0) arguments.text3 = texts[2];
  if ((given & 8U) != 0) arguments.int1 = input.number<std::int32_t>();
  if ((given & 16U) != 0) arguments.int2 = input.number<std::int32_t>();
  if ((given & 32U) != 0) arguments.int3 = input.number<std::int32_t>();
  if ((given & 64U) != 0) arguments.real1 = input.number<float>();
  if ((given & 128U) != 0) arguments.real2 = input.number<float>();
  const std::int32_t level = m_WLM_error::MessageDispatcher(code, arguments);
  fuzz_bed::require(level >= highest, "a message never lowers the level");
  highest = level;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const fuzz_bed::Bed bed;
  variant_files::start_protocol();
  Input input(fuzz_bed::text_of(bytes, size));
  std::int32_t highest = 0;
  while (!input.done()) send(input, highest);
  runtime::close_all();
  const std::string protocol = bed.bytes("v.pkl");
  fuzz_bed::require(protocol.empty() || protocol.starts_with("Pr\xFC"
                                                             "fprotokoll: "),
                    "the protocol has its heading");
  fuzz_bed::require(protocol.empty() || protocol.ends_with('\n'), "the last line is complete");
  return 0;
}
