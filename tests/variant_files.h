#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/host.h"
#include "tests/test_files.h"

/// What the tests of the rooms share: a working folder of their own, files of fixed columns, the network of a
/// variant, and what the program shows.
namespace variant_files {

using Lines = std::vector<std::string>;

/// The text in the bytes that the program writes.
std::string german(std::string_view utf8);

/// All modules, units and paths as at the start of the program.
void reset_modules();

/// A new empty folder that is the working folder while this lives; all modules begin afresh.
class WorkingFolder {
 public:
  WorkingFolder();
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  WorkingFolder(WorkingFolder&&) = delete;
  WorkingFolder& operator=(WorkingFolder&&) = delete;

 private:
  std::filesystem::path before_;
  test_files::TemporaryFolder folder_;
};

void write_file(const std::filesystem::path& file, std::string_view bytes);
void write_lines(const std::filesystem::path& file, const Lines& lines);
/// The bytes of a file; a missing one is a fault of the test.
std::string read_file(const std::filesystem::path& file);
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

/// Keeps what is written to standard output and standard error while this lives.
class ShownText final : public runtime::Host {
 public:
  ShownText();
  ~ShownText() override;
  ShownText(const ShownText&) = delete;
  ShownText& operator=(const ShownText&) = delete;
  ShownText(ShownText&&) = delete;
  ShownText& operator=(ShownText&&) = delete;

  [[nodiscard]] const std::string& output() const { return output_; }
  [[nodiscard]] const std::string& error() const { return error_; }

  [[nodiscard]] char separator() const override;
  [[nodiscard]] const char* line_end() const override;
  runtime::FileKind kind_of(const std::string& path) override;
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override;
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override;
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override;
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override;
  bool seek(int handle, std::uint64_t place, std::error_code& reason) override;
  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override;
  bool close(int handle, std::error_code& reason) override;
  bool remove(const std::string& path, std::error_code& reason) override;
  void run_command(const std::string& command_line) override;
  std::int64_t clock_ticks() override;
  std::int64_t ticks_per_second() override;

 private:
  runtime::Host& machine_;
  std::string output_;
  std::string error_;
};

/// Copies the files of a variant from a folder into the working folder.
void copy_variant(const std::filesystem::path& folder, const std::string& name);

/// What a run of the whole program shows.
struct RunResult {
  std::string output;
  std::string error;
};
/// Runs the program on a variant of the working folder and completes its files.
RunResult run_variant(const std::string& name);

/// The bytes of a notice on standard output.
std::string notice(std::string_view title, std::string_view text);
/// A notice under the title of the faults.
std::string error_notice(std::string_view text);

}  // namespace variant_files
