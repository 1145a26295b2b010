#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "runtime/compiled_format.h"
#include "runtime/edit_output.h"
#include "runtime/format.h"
#include "runtime/output_buffer.h"

// Writing to units, record by record. What followed the current record in the file is gone with the first
// write.

namespace runtime {

/// Writes the values in a format that is only known as data, as one or more records; `put_formatted` says
/// what becomes of values that do not fit it.
void write(int unit, const Format& format, std::span<const Value> values);

/// Writes the text without ending the record.
void write_text(int unit, std::string_view text);
/// Ends the file behind the current record: what followed it is gone, as after a write.
void end_file(int unit);
/// Hands everything written so far to the host. On standard output all other units are handed over first, so
/// that a front-end finds what it is told of; when it goes away itself, that is told once on standard error
/// and does not end the run.
void flush(int unit);

namespace detail {

/// The output of a unit, ready for its next record.
RecordOutput& output_of(int unit);
/// Hands a full output of a unit to the host.
void hand_over_full(int unit);

}  // namespace detail

/// Writes the values as one or more records: `write<"(a,2x,f8.3)">(unit, name, station)`. The notation is
/// checked at compile time, and so is that it has a field for every value.
template <SourceText notation, class... Values>
void write(int unit, const Values&... values) {
  static_assert(sizeof...(Values) <= format<notation>.fields(), "a value without a field");
  if constexpr (detail::is_compiled<notation, Values...>) {
    RecordOutput& output = detail::output_of(unit);
    char* const place = output.record(detail::compiled_size<notation, Values...>);
    output.end_record(detail::put_compiled<notation>(place, values...));
    if (output.full()) detail::hand_over_full(unit);
  } else {
    write(unit, format<notation>, std::array<Value, sizeof...(Values)>{Value(values)...});
  }
}

}  // namespace runtime
