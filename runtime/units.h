#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "runtime/edit_output.h"
#include "runtime/format.h"
#include "runtime/records.h"

// Numbered I/O units with records, in the manner of the suite's language (ISO/IEC 1539-1, "Input/output
// statements"). A unit is a number with a connected file. Units 5 and 6 are standard input and output.
//
// A record ends at LF, CR LF or a lone CR, none of them part of it; a last line without an end is a record;
// an empty file has none. On output a line end is the host's own.
//
// An I/O error that the caller does not ask for ends the program: one line on standard error names the
// operation, the path and the system's reason, the files are completed as far as possible, exit status 0.

namespace runtime {

inline constexpr int standard_output_unit = 6;

enum class OpenStatus : std::uint8_t {
  old,      ///< the file must exist and be a file
  unknown,  ///< what exists is kept until the first write cuts it at the current record; else created
  fresh     ///< must not exist; created
};
enum class CloseStatus : std::uint8_t { keep, remove };

enum class ReadStatus : std::uint8_t {
  good,
  end_of_file,  ///< the receiving variables are as they were
  bad_value     ///< the values before the bad one are stored, the others are as they were
};

/// Connects the file to the unit, which must be free. A file that another unit holds already is an I/O error.
void open(int unit, std::string_view path, OpenStatus status);
/// The same for a caller that asks for the status: false, with nothing connected, when it fails.
bool try_open(int unit, std::string_view path, OpenStatus status);

/// Completes the file and frees the unit. A unit that is not connected is left alone.
void close(int unit, CloseStatus status = CloseStatus::keep);
/// The same for a caller that asks for the status: false when the file cannot be completed or removed. The
/// unit is free in every case.
bool try_close(int unit, CloseStatus status);
/// Completes and frees every unit but the standard ones, in their order. A file that cannot be completed is
/// told on standard error; the others are completed all the same.
void close_all();

bool is_connected(int unit);
/// The host's path of the connected file; none for a free unit, empty for the standard units.
std::optional<std::string> connected_path(int unit);
/// The unit to which the file is connected.
std::optional<int> unit_of(std::string_view path);

/// Whether something stands under that path (nothing is opened).
bool file_exists(std::string_view path);
/// Whether a regular file, no folder and no device, stands where an output of that name goes.
bool is_regular_output(std::string_view path);
/// Whether a folder stands there.
bool is_folder(std::string_view path);

/// Reads the next record with "(a)" into a text of `width` characters: `record` becomes the record without
/// its line end, cut at `width`; it is not padded, columns past its end count as blanks. At the end of the
/// file `record` stays as it was. The view stays valid until the unit is closed or written to.
ReadStatus read_line(int unit, std::size_t width, std::string_view& record);

/// The same for reading one line after the other: what a unit is connected to is looked up once. The unit
/// must stay connected and must not be written meanwhile.
class LineReader {
 public:
  LineReader(int unit, std::size_t width);

  /// Reads the next record, cut at the width; false at the end of the file.
  bool next(std::string_view& record) {
    if (!records_->next(last_)) return false;
    record = last_.substr(0, width_);
    return true;
  }
  /// Where the record stands that was read last.
  [[nodiscard]] RecordPlace place() const { return records_->place_of(last_); }
  /// Reads the record at a place that `place` gave for the same file; false when there is none.
  bool read_at(RecordPlace place, std::string_view& record) {
    if (!records_->at(place, last_)) return false;
    record = last_.substr(0, width_);
    return true;
  }

  /// Where the next record begins.
  [[nodiscard]] RecordPosition position() const { return records_->position(); }
  /// Goes to a place that `position` gave for the same file.
  void go_to(RecordPosition position) { records_->go_to(position); }
  /// Says that the record at that place will be read soon. Changes nothing but the time.
  void announce(RecordPlace place) const { records_->announce(place.position()); }

 private:
  Records* records_;
  std::size_t width_;
  std::string_view last_;
};

/// The records from the current one to the end of the file, line ends included, without reading on. Empty on
/// a unit that is being written.
std::string_view unread_text(int unit);
/// Whether no byte of the unit's file lies above 127; true for a unit that is being written.
bool is_ascii(int unit);

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

/// Edits one record's text with a format of skips, tabs and fields; columns past its end are blanks. A
/// number beyond the range of its variable is a bad value, as is a field of the wrong kind.
ReadStatus read_fields(std::string_view record, const Format& format, std::initializer_list<Target> targets);

/// Goes back before the first record.
void rewind(int unit);
/// Goes back before the record that was read last; after a read that met the end of the file, before that
/// end.
void backspace(int unit);

/// Writes the values in the given format as one or more records after the current one; what followed it in
/// the file is gone.
void write(int unit, const Format& format, std::initializer_list<Value> values);
void write(int unit, const Format& format, std::span<const Value> values);
/// Writes one record, format "(a)".
void write_line(int unit, std::string_view text);
/// Writes the text without ending the record.
void write_text(int unit, std::string_view text);
/// Ends the file behind the current record: what followed it is gone, as after a write.
void end_file(int unit);
/// Hands everything written so far to the host. On standard output faults are passed over: a front-end that
/// goes away does not end the run.
void flush(int unit);

}  // namespace runtime
