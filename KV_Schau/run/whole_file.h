#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace schau::run {

/// A file or folder that could not be used; `what()` is a German sentence that names it and the reason.
class FileFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Moves a finished file to where it belongs, whole or not at all: whoever opens `target` finds the old file
/// or the new one. An old file's rights are kept, a link is followed, a device is written to. Throws
/// FileFault when something else stands there (a folder), when the old file may not be written, or when the
/// host refuses; the old file is then as it was and `file` still where it is.
void put_in_place(const std::filesystem::path& file, const std::filesystem::path& target);

/// Throws FileFault when `put_in_place` could not succeed: a folder stands there, or a file that may not be
/// written.
void require_place(const std::filesystem::path& target);

/// A file that appears under its name when it is complete, or not at all: it is written beside its place
/// first.
class WholeFile {
 public:
  /// Throws FileFault when no file can be created there.
  explicit WholeFile(std::filesystem::path target);
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  WholeFile(WholeFile&&) = delete;
  WholeFile& operator=(WholeFile&&) = delete;
  /// Without `commit` nothing is left behind.
  ~WholeFile();

  std::ostream& stream() { return stream_; }
  /// Writes out what is still held back. Throws FileFault when a byte of it could not be written.
  void complete();
  /// Completes the file and gives it its name. Throws FileFault when a byte of it could not be written.
  void commit();

 private:
  std::filesystem::path target_;
  std::filesystem::path unfinished_;
  std::ofstream stream_;
};

/// Completes files that belong together. When a byte of one could not be written, none of them gets its name.
void commit_all(std::vector<std::unique_ptr<WholeFile>>& files);

/// A name that no file has yet: the beginning and twelve random characters.
std::string unused_name(const std::string& beginning);

}  // namespace schau::run
