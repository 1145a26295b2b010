#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

#include "runtime/format.h"

namespace runtime {

/// Where one value of a formatted read goes.
class Target {
 public:
  Target(float& single) : kind_(Kind::single), place_(&single) {}
  Target(double& real) : kind_(Kind::real), place_(&real) {}
  Target(std::int32_t& integer) : kind_(Kind::integer), place_(&integer) {}
  Target(std::span<char> text) : kind_(Kind::text), place_(text.data()), length_(text.size()) {}

  enum class Kind : std::uint8_t { single, real, integer, text };
  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] float& single() const { return *static_cast<float*>(place_); }
  [[nodiscard]] double& real() const { return *static_cast<double*>(place_); }
  [[nodiscard]] std::int32_t& integer() const { return *static_cast<std::int32_t*>(place_); }
  [[nodiscard]] std::span<char> text() const { return {static_cast<char*>(place_), length_}; }

 private:
  Kind kind_;
  void* place_;
  std::size_t length_ = 0;
};

/// Edits one record's text with a format of skips, tabs and fields; columns past its end are blanks. False at
/// the first value that is bad: the values before it are stored, it and the others stay as they were. A
/// number beyond the range of its variable is bad, as is a field of the wrong kind.
bool read_fields(std::string_view record, const Format& format, std::initializer_list<Target> targets);

}  // namespace runtime
