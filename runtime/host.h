#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>

namespace runtime {

/// What stands under a path; links are followed.
enum class FileKind : std::uint8_t { none, file, folder, other };

/// How a file is opened. `update` reads and writes what exists; `create` also makes a missing file, keeping
/// what an existing one holds.
enum class Access : std::uint8_t { read, update, create };

/// What the host knows of a file. Two with the same volume and number are one file.
struct FileFacts {
  FileKind kind = FileKind::none;
  std::uint64_t size = 0;
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  bool linked = false;  ///< the path is a link, or the file has more names than one
};

/// A new file that is to take the place of another one, or to stand where there is none.
struct Successor {
  int handle = -1;
  std::string path;  ///< of its own; empty for a file without a name
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

  /// The facts of what stands under a path; links are followed. Kind `none` when nothing can be found there,
  /// or nothing where a link leads, and also when the host cannot tell: then with a reason.
  virtual FileFacts look(const std::string& path, std::error_code& reason) = 0;
  /// A handle above those of the standard streams, or -1. Never waits, whatever stands under the path.
  virtual int open(const std::string& path, Access access, std::error_code& reason) = 0;
  /// False when the facts cannot be had.
  virtual bool facts(int handle, FileFacts& facts, std::error_code& reason) = 0;
  /// The number of bytes read from the current place, 0 at the end, -1 on a fault.
  virtual std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) = 0;
  /// The number of bytes written (at least 1 for a positive count), or -1. Waits for a pipe that is full.
  virtual std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) = 0;
  /// Moves to the byte `place` (0-based). False on a fault.
  virtual bool seek(int handle, std::uint64_t place, std::error_code& reason) = 0;
  /// Cuts the file at `size` bytes. False on a fault.
  virtual bool truncate(int handle, std::uint64_t size, std::error_code& reason) = 0;
  /// False when the system reports that written bytes are lost.
  virtual bool close(int handle, std::error_code& reason) = 0;
  virtual bool remove(const std::string& path, std::error_code& reason) = 0;
  /// A new file in the folder of that path, with the owner and the rights of the file that stands there. No
  /// handle when it cannot be created or cannot have them.
  virtual Successor create_successor(const std::string& path, std::error_code& reason) = 0;
  /// Closes the new file and gives it that path in the place of what stands there. False on a fault: the new
  /// file is gone then and the old one stands as it was.
  virtual bool succeed(const Successor& successor, const std::string& path, std::error_code& reason) = 0;
  /// Closes the new file and leaves nothing of it.
  virtual void discard(const Successor& successor) = 0;
  /// Keeps other runs from locking the file until the handle is closed. False when another one holds it; a
  /// file that cannot be locked is free.
  virtual bool lock(int handle, std::error_code& reason) = 0;
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
inline constexpr int standard_input_handle = 0;
inline constexpr int standard_output_handle = 1;
inline constexpr int standard_error_handle = 2;

/// The arguments of the program as texts that are good for paths, its own name first. They live as long as
/// the program.
std::span<const char* const> path_arguments(int count, const char* const* values);

/// Asks for large pages under memory that is not touched yet, where the system has them. At least a page.
void advise_large_pages(void* memory, std::size_t bytes);

/// Makes the process safe for file work: a reader of standard output that goes away, or a file that reaches
/// the size the host allows, is an error of the write and not the end of the process. Called once at the
/// start of a program.
void prepare_process();

}  // namespace runtime
