#pragma once

#include <cstddef>
#include <string_view>

#include "runtime/records.h"

// Reading from units, record by record.

namespace runtime {

/// Reads the records of a unit one after the other, from the unit's place on; what the unit is connected to
/// is looked up once. The unit must stay connected and must not be written meanwhile. Several readers of one
/// unit share its place.
class LineReader {
 public:
  /// For texts of `width` characters.
  LineReader(int unit, std::size_t width);

  /// Reads the next record with "(a)": `record` becomes the record without its line end, cut at the width; it
  /// is not padded, columns past its end count as blanks. False at the end of the file, where `record` stays
  /// as it was. The view stays valid until the unit is closed or written to.
  bool next(std::string_view& record) {
    std::string_view whole;
    if (!records_->next(whole)) return false;
    record = whole.substr(0, width_);
    return true;
  }

  /// Where the next record begins.
  [[nodiscard]] RecordPosition position() const { return records_->position(); }
  /// Goes to a place that `position` gave for the same file.
  void go_to(RecordPosition place) { records_->go_to(place); }
  /// Says that the record at that place will be read soon. Changes nothing but the time.
  void announce(RecordPosition place) const { records_->announce(place); }
  /// The records from the next one to the end of the file, line ends included, without reading on.
  [[nodiscard]] std::string_view rest() const { return records_->rest(); }

 private:
  Records* records_;
  std::size_t width_;
};

/// Goes back before the first record.
void rewind(int unit);
/// Goes back before the record that was read last; after a read that met the end of the file, before that
/// end.
void backspace(int unit);

}  // namespace runtime
