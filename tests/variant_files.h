#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "tests/test_files.h"

/// What the tests of the rooms share: a working folder of their own, files of fixed columns, the network of a
/// variant, and what the program shows.
namespace variant_files {

using Lines = std::vector<std::string>;

/// All modules, units and paths as at the start of the program.
void reset_modules();

/// A working folder of its own, in which all modules begin afresh.
class FreshRun {
 public:
  FreshRun() { reset_modules(); }
  FreshRun(const FreshRun&) = delete;
  FreshRun& operator=(const FreshRun&) = delete;
  FreshRun(FreshRun&&) = delete;
  FreshRun& operator=(FreshRun&&) = delete;
  ~FreshRun() { reset_modules(); }

 private:
  test_files::WorkingFolder folder_;
};

void write_lines(const std::filesystem::path& file, const Lines& lines);
/// The records of what the program wrote; bytes without a last line end are a fault of the test.
Lines lines_of(std::string_view bytes);
/// The records of a text file that the program wrote, after all units are closed.
Lines written_lines(const std::filesystem::path& file);

/// A text that begins at a column (from 1).
struct Field {
  std::size_t column;
  std::string_view text;
};
/// A line with those texts, blanks between them.
std::string columns_line(std::initializer_list<Field> fields);

/// A system element as its line in `NAME.sys` gives it.
struct Element {
  std::string name;
  std::vector<std::string> inflows;
  std::vector<std::string> outflows;
  std::string tag3 = {};
  std::string tag7 = {};
};
using Network = std::vector<Element>;

std::string sys_line(const Element& element);
Lines sys_lines(const Network& network);

/// Fills the table of the system logic as the reader does, with its links resolved by going through all
/// names.
void fill_system_logic(const Network& network);

/// Closes the files of an earlier run and starts the protocol "v.pkl" in the working folder.
void start_protocol();
/// The same with all modules as at the start of the program.
void start_afresh();
/// Completes the protocol and gives its lines without the first one; none when there is no file.
Lines protocol_lines();
/// The first three characters of the code of each message in the protocol.
std::vector<std::string> protocol_codes();

}  // namespace variant_files
