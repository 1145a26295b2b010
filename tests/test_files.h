#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

/// Files and folders for tests.
namespace test_files {

/// A folder in memory where the machine has one: a disk waits at each file that takes another one's place.
inline std::filesystem::path fast_folder() {
  const std::filesystem::path memory = "/dev/shm";
  std::error_code ignored;
  return std::filesystem::is_directory(memory, ignored) ? memory : std::filesystem::temp_directory_path();
}

/// A folder of its own that goes with its owner.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string pattern = (parent / "kv-").string() + std::string(6, 'X');
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot create " + pattern);
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  TemporaryFolder(TemporaryFolder&&) = delete;
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The path of a file in the folder.
  [[nodiscard]] std::string file(std::string_view name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// A new empty folder that is the working folder while this lives.
class WorkingFolder {
 public:
  WorkingFolder() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder_.path());
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  WorkingFolder(WorkingFolder&&) = delete;
  WorkingFolder& operator=(WorkingFolder&&) = delete;
  ~WorkingFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
  }

 private:
  TemporaryFolder folder_;
  std::filesystem::path before_;
};

/// The bytes of a file; a missing one is a fault of the test.
inline std::string read_bytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void write_bytes(const std::filesystem::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

/// Copies the input files of a variant, as many as there are, from one folder into another.
inline void copy_variant(const std::string& name, const std::filesystem::path& from,
                         const std::filesystem::path& to) {
  for (const std::string extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    const std::filesystem::path file = from / (name + extension);
    if (std::filesystem::exists(file)) std::filesystem::copy(file, to);
  }
}

}  // namespace test_files
