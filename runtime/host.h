#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

namespace runtime {

/// What stands under a path; links are followed.
enum class FileKind : std::uint8_t { none, file, folder, other };

/// How a file is opened. `update` reads and writes what exists; `create` also makes a missing file, keeping
/// what an existing one holds.
enum class Access : std::uint8_t { read, update, create };

/// What the host knows of an open file. Two handles with the same volume and number are one file.
struct FileFacts {
  FileKind kind = FileKind::none;
  std::uint64_t size = 0;
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
};

/// The host's file calls and its command interpreter: the only place with platform code. Every failing call
/// reports the system's reason in `reason` and returns what its line says.
class Host {
 public:
  virtual ~Host() = default;

  /// The character between folders in the host's own paths.
  [[nodiscard]] virtual char separator() const = 0;
  /// The line end of the host's text files.
  [[nodiscard]] virtual const char* line_end() const = 0;

  virtual FileKind kind_of(const std::string& path) = 0;
  /// A handle, or -1. Never waits, whatever stands under the path.
  virtual int open(const std::string& path, Access access, std::error_code& reason) = 0;
  /// False when the facts cannot be had.
  virtual bool facts(int handle, FileFacts& facts, std::error_code& reason) = 0;
  /// The number of bytes read from the current place, 0 at the end, -1 on a fault.
  virtual std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) = 0;
  /// The number of bytes written (at least 1 for a positive count), or -1.
  virtual std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) = 0;
  /// Moves to the byte `place` (0-based). False on a fault.
  virtual bool seek(int handle, std::uint64_t place, std::error_code& reason) = 0;
  /// Cuts the file at `size` bytes. False on a fault.
  virtual bool truncate(int handle, std::uint64_t size, std::error_code& reason) = 0;
  /// False when the system reports that written bytes are lost.
  virtual bool close(int handle, std::error_code& reason) = 0;
  virtual bool remove(const std::string& path, std::error_code& reason) = 0;
  /// Runs a command line in the command interpreter and waits for it; its output and status are not looked
  /// at.
  virtual void run_command(const std::string& command_line) = 0;
  /// Clock ticks and ticks per second of a clock that only goes forward.
  virtual std::int64_t clock_ticks() = 0;
  virtual std::int64_t ticks_per_second() = 0;
};

/// The host in use.
Host& host();

/// Puts another host in its place, for tests; null brings the machine's own back.
void set_host(Host* replacement);

/// Handles of the standard streams.
inline constexpr int standard_output_handle = 1;
inline constexpr int standard_error_handle = 2;

/// Asks for large pages under memory that is not touched yet, where the system has them.
void advise_large_pages(void* memory, std::size_t bytes);

/// Makes the process safe for file work: a reader of standard output that goes away, or a file that reaches
/// the size the host allows, is an error of the write and not the end of the process, and a standard stream
/// that the caller closed is not taken by the first file that is opened. Called once at the start of a
/// program.
void prepare_process();

}  // namespace runtime
