#include "KV_Schau/mend/mend.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "KV_Schau/mend/steps.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/records.h"

namespace schau::mend {
namespace {

using variant::FileId;
using variant::LineEnd;
using variant::Variant;

constexpr std::array<FileId, 5> files_in_order = {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs,
                                                  FileId::ver};

// The variant with files as they become.
Variant variant_of(const Mended& mended, const Variant& variant) {
  Variant changed;
  changed.path = variant.path;
  for (std::size_t i = 0; i < changed.files.size(); ++i)
    changed.files.at(i) = variant::TextFile::named(variant.files.at(i).shown());
  for (const MendedFile& file : mended.files) {
    changed.files.at(static_cast<std::size_t>(file.id)) =
        variant::TextFile::of_bytes(bytes_of(file), variant.file(file.id).shown());
  }
  variant::take_in(changed);
  return changed;
}

// True when the elements of one variant take the same values in the other one: the order of the elements is
// the order of searching, too.
bool have_same_values(const Variant& left, const Variant& right) {
  const auto left_values = network::take_values(left, variant::find_records(left));
  const auto right_values = network::take_values(right, variant::find_records(right));
  for (std::uint32_t i = 1; i <= left.element_count(); ++i) {
    const network::Taken& value = left_values[i];
    const network::Taken& other = right_values[right.elements.first(left.names[i])];
    if (value.value != other.value || value.fraction != other.fraction) return false;
  }
  return true;
}

void mend_order_safely(Mended& mended, const Variant& variant) {
  const MendedFile before = mended.files.front();
  const std::size_t left = mended.left.size();
  mend_order(mended.files.front(), mended);
  if (mended.left.size() > left || before.changes == mended.files.front().changes) return;
  Mended old_order;
  old_order.files = mended.files;
  old_order.files.front() = before;
  if (have_same_values(variant_of(old_order, variant), variant_of(mended, variant))) return;
  mended.files.front() = before;
  mended.left.push_back(
      {FileId::sys, 0,
       "Die Reihenfolge bleibt: mit einer anderen läse KV_Akum andere Werte aus den Datendateien"});
}

std::string_view bytes_of(LineEnd end) {
  static constexpr std::array<std::string_view, 4> ends = {"", "\n", "\r\n", "\r"};
  return ends.at(static_cast<std::size_t>(end));
}

}  // namespace

bool MendedFile::is_changed() const {
  return std::ranges::any_of(changes, [](std::uint32_t number) { return number > 0; });
}

bool Mended::is_changed() const {
  return std::ranges::any_of(files, &MendedFile::is_changed);
}

Mended mend(const Variant& variant) {
  Mended mended;
  variant::NameIndex names;
  for (const FileId id : files_in_order) {
    const variant::TextFile& old = variant.file(id);
    if (!old.was_read() || old.encoding() == variant::Encoding::utf_16) continue;
    MendedFile& file = mended.files.emplace_back(lines_of(old, id));
    mend_line_ends(file);
    mend_encoding(file, variant, mended);
    mend_tabs(file, names, mended);
    if (id == FileId::sys) {
      names = names_of(file);
    } else {
      mend_decimal_commas(file, names, mended);
    }
    mend_trailing_blanks(file);
  }
  const bool has_system = !mended.files.empty() && mended.files.front().id == FileId::sys;
  if (has_system) mend_order_safely(mended, variant);
  std::ranges::stable_sort(mended.left, {},
                           [](const Left& left) { return std::tuple(left.file, left.line); });
  return mended;
}

std::string bytes_of(const MendedFile& file) {
  std::string bytes;
  for (const Line& line : file.lines) bytes.append(line.text).append(bytes_of(line.end));
  return bytes;
}

}  // namespace schau::mend
