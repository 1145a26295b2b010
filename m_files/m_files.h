#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

#include "runtime/array.h"
#include "runtime/fixed_text.h"

/// File handling shared by all tools of the suite. Trailing blanks of a file name do not count. What a caller
/// does not ask the status of ends the program with an I/O error when it fails.
namespace m_files {

// Units.

/// The first unit number at or above `start` that is not connected. 5 and 6, standard input and output, are
/// never handed out.
int free_unit(int start);

/// Status of `open_checked`.
inline constexpr std::int32_t file_opened = 0;
inline constexpr std::int32_t file_not_opened = 1;

/// Opens a file on a free unit at or above `start`. The status word is "NEW" (an existing file is deleted
/// first, also one that a unit holds), "OLD" (it must exist) or "UNKNOWN" (it is created when it does not),
/// in letters of any case. `unit` receives the unit.
/// Returns `file_opened`, or `file_not_opened` with a `unit` of 0 when the file cannot be opened in that way
/// or the word is another one.
std::int32_t open_checked(std::string_view file_name, std::string_view status_word, int& unit,
                          int start = 100);

/// Appends a report of the open units to "o_unit_file.pkl" in the working folder; the first call creates or
/// overwrites that file on a unit from 200, which stays open for the next ones. The report is a line with the
/// caller's text, the unit of the file itself and `highest_unit`, then a line for every connected unit from 1
/// to `highest_unit` but 5 and 6: its number and its file's path (cut at 500 characters), or a description of
/// 20 characters when the path is not known.
void dump_open_units(std::string_view caller, std::int32_t highest_unit);

// Deleting and copying.

/// Status of `delete_file_if_exists`.
inline constexpr std::int32_t file_deleted = 0;
inline constexpr std::int32_t file_did_not_exist = 1;

/// Deletes a file; a file that a unit holds is closed with it. Returns `file_deleted` or
/// `file_did_not_exist`.
std::int32_t delete_file_if_exists(std::string_view file_name);

/// Result of `remove_list_file` when the file is not gone: all bits set.
inline constexpr std::int32_t list_file_not_removed = -1;

/// Deletes a file that a listing was written to, by way of a free unit from 500, and returns that unit;
/// `list_file_not_removed` when the file cannot be opened or deleted. A file that does not exist counts as
/// deleted.
std::int32_t remove_list_file(std::string_view file_name);

/// Status of `copy_file_lines`.
inline constexpr std::int32_t lines_copied = 0;
inline constexpr std::int32_t source_not_opened = -1;

/// Copies a text file line by line, each line cut at 500 characters and without its trailing blanks. A source
/// that a unit holds is copied from its beginning through that unit. The source is closed afterwards, and
/// deleted when `delete_source` is not 0. The target is created or overwritten.
/// Returns `lines_copied`, or `source_not_opened` with nothing touched.
std::int32_t copy_file_lines(std::string_view source, std::string_view target,
                             std::int32_t delete_source = 0);

/// A line on its way from one file to another.
using Line = runtime::FixedText<500>;
/// A connected unit, or the name of a file.
using UnitOrName = std::variant<int, std::string_view>;

enum class LineCopy : std::uint8_t {
  copied,         ///< `line` holds the line that was copied
  end_of_file,    ///< no line is left; the copy is over
  source_missing  ///< the source cannot be opened; no copy began
};

/// Copies one line, cut at 500 characters and written without its trailing blanks, and keeps both files open
/// for the next call. The first call begins the copy: named files are opened on free units from 200 (the
/// source must exist, the target is created or overwritten). Until the end of the source further calls go on
/// with that copy, whatever ends they are given. At the end the files that the copy opened are closed, units
/// of the caller stay open, and the next call begins another copy; `line` then stays as it was.
LineCopy copy_line(const UnitOrName& input, const UnitOrName& output, Line& line);

// Texts.

/// Turns a .. z, ä, ö and ü into upper case, in place, up to the last character that is not blank. Everything
/// else stays, ß too.
void to_upper(std::span<char> text);

/// Lets the command interpreter search the Windows initialisation file and writes the lines that contain the
/// text, whatever their case and with their numbers, to "text.lis" in the working folder. Where the command
/// fails, that file is empty or missing.
void find_in_win_ini(std::string_view search_text);

// Lists of files.

using FileName = runtime::FixedText<500>;
/// The five numbers that go with an entry of a list, at the places 1 .. 5; their meaning is the caller's.
using EntryNumbers = runtime::Slots<std::int32_t, 5>;

/// File names and their numbers, entries 1 .. `names.size()`.
struct FileList {
  runtime::OneBased<FileName> names;
  runtime::OneBased<EntryNumbers> numbers;
};

/// The files that `list_files` found last.
extern FileList file_list;

/// Makes `target` a copy of `source`, element by element; what it held is freed first. A failed allocation
/// ends the program.
void copy_file_list(const FileList& source, FileList& target);
/// Frees both arrays.
void release_file_list(FileList& list);

/// A message for the user, blank when all is well.
using ErrorText = runtime::FixedText<200>;

/// Fills `file_list` with the files of a folder that match the filter, numbers 0, and returns their count.
/// The folder's listing is made by the command interpreter's "dir" with the given options, in the file
/// "files.lis" of the folder itself, which is deleted again; the path ends with its backslash. Where the
/// command fails, and on a host that has another interpreter, the list is empty.
///
/// The filter knows '*' and '?'; one directly beside the other is refused. A name matches when, in upper
/// case and cut at 200 characters, it holds every literal piece of the filter in upper case:
/// - a piece that begins the filter begins the name; here the filter counts as it was given, so that one
///   beginning in lower case matches nothing;
/// - a piece that ends the filter ends the name;
/// - any other piece is taken where it first occurs in the name, whatever stands before it in the filter;
/// - a piece behind q question marks must be found exactly q characters behind the one before it (or behind
///   the beginning of the name).
/// Equal wildcards in a row count as one '*', or as that many '?'; wildcards at the end ask for nothing.
///
/// In the listing, names begin in the column of the ".." in the first line with "<DIR>" and "..". Every later
/// line of more than 19 characters without "<DIR>" is a file, also the sums at its end, and one that ends
/// before that column is a file with a blank name; only lines that name the directory ("Verzeichnis" and
/// ":\") are none. Names are kept as they are written, cut at 200 characters.
///
/// A refused filter and a path that is no folder give an empty list and a message in `error_text`.
std::int32_t list_files(std::string_view path, std::string_view filter, ErrorText& error_text,
                        std::string_view options = {});

/// Forgets the list, the line copy and the unit of the dump. For tests.
void reset();

}  // namespace m_files
