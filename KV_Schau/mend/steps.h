#pragma once

#include "KV_Schau/mend/mend.h"

/// The repairs one by one, in the order in which they are made.
namespace schau::mend {

/// A file as it is.
MendedFile lines_of(const variant::TextFile& file, variant::FileId id);

/// CR CR LF and mixed ends. A CR alone among other ends may be a stray character and stays.
void mend_line_ends(MendedFile& file);
/// UTF-8, unless a character is missing from Windows-1252, or lines are in their columns only as bytes.
void mend_encoding(MendedFile& file, const variant::Variant& variant, Mended& mended);
void mend_trailing_blanks(MendedFile& file);

/// The names of the elements of a system file as it becomes.
variant::NameIndex names_of(const MendedFile& system);

void mend_tabs(MendedFile& file, const variant::NameIndex& names, Mended& mended);
void mend_decimal_commas(MendedFile& file, const variant::NameIndex& names, Mended& mended);

/// Only when there are neither loops nor names given twice and the outlet comes last.
void mend_order(MendedFile& system, Mended& mended);

/// True for an element line with every name in its columns and nothing beside them.
bool is_clear_element_line(std::string_view line);
/// True for digits with at most one point, and a sign.
bool is_plain_number(std::string_view text);
/// True for a line of a data file that is a record of one of its elements.
bool is_record(variant::FileId file, std::string_view line, const variant::NameIndex& names);

}  // namespace schau::mend
