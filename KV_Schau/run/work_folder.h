#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "KV_Schau/variant/path.h"

namespace schau::run {

/// The folder in which KV_Akum runs: a new one inside the variant's folder, in which links stand for the
/// variant's inputs and for the suppression list, if there is one.
///
/// Why not the variant's folder itself:
/// - Whatever lies here after the run was written by this run. No look at times or contents has to tell an
/// old
///   result from a new one.
/// - An old result, protocol or listing is touched by nothing but one renaming each, when the run has come to
///   its end and is worth it. A crash of KV_Akum, a full disk, the end of KV_Schau itself at any moment: the
///   old files are still there, whole, under their names.
/// - `code.pkl` and `fehlercode.ex` belong to the folder in which KV_Akum runs. Runs side by side have a
/// folder
///   each, so nothing mixes, and all see the suppression list of their variant's folder, as a run there does.
/// - KV_Akum gets the bare name: the limits of 200 and 120 characters, blanks and slashes matter for the name
///   alone and not for the folders above it, and the first line of the table is that of a run in the
///   variant's folder.
/// - It lies in the variant's folder and not in one for temporary files, so that a renaming brings the files
/// to
///   their place, on the same volume, and KV_Akum meets a full disk where the user has it. Where the folder
///   refuses a new folder it would refuse the results too.
/// The inputs are links to the user's own files, so that a lock on the system file holds against every other
/// run of the variant.
class WorkFolder {
 public:
  /// Throws FileFault when the folder cannot be created or an input neither linked nor copied.
  explicit WorkFolder(const variant::VariantPath& path);
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  WorkFolder(WorkFolder&&) = delete;
  WorkFolder& operator=(WorkFolder&&) = delete;
  /// Removes the folder with all that has not been brought out of it.
  ~WorkFolder() = default;

  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path; }
  /// The file of the variant with this extension (".Akum", ".pkl") in the folder.
  [[nodiscard]] std::filesystem::path file(std::string_view extension) const;
  /// The listing of the network.
  [[nodiscard]] std::filesystem::path listing() const { return folder_.path / listing_name; }

  /// The bytes of all files that the protocol is or will be: a file whose name contains the protocol's.
  [[nodiscard]] std::uintmax_t protocol_size() const;

  /// What is brought into the variant's folder; the protocol always is. A run without a protocol removes an
  /// older one, as KV_Akum does.
  struct Files {
    bool listing = false;
    bool result = false;
  };
  /// Brings them one after the other, the result last, each with one renaming. Throws FileFault when one
  /// cannot be brought, as a rule before any is; also when the result's place is an input or the suppression
  /// list.
  void bring(const Files& files) const;

  static constexpr std::string_view listing_name = "code.pkl";

 private:
  struct OwnFolder {
    explicit OwnFolder(const variant::VariantPath& variant);
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;
    OwnFolder(OwnFolder&&) = delete;
    OwnFolder& operator=(OwnFolder&&) = delete;
    ~OwnFolder();

    std::filesystem::path path;
  };

  void require_places(const Files& files) const;
  void bring_protocol() const;
  [[nodiscard]] std::filesystem::path place_of(const std::filesystem::path& file) const;

  variant::VariantPath variant_;
  OwnFolder folder_;
};

}  // namespace schau::run
