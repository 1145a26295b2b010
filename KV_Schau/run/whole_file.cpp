#include "KV_Schau/run/whole_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <random>
#include <system_error>
#include <utility>

#include "KV_Schau/run/reason.h"

namespace schau::run {
namespace {

namespace fs = std::filesystem;

std::error_code last_fault() {
  const int fault = errno == 0 ? EIO : errno;
  return {fault, std::generic_category()};
}

[[noreturn]] void refuse(const fs::path& file, const std::string& reason) {
  throw FileFault(fmt::format("{} kann nicht geschrieben werden: {}", file.string(), reason));
}

[[noreturn]] void refuse(const fs::path& file, const std::error_code& fault) {
  refuse(file, reason_of(fault));
}

// Where a file of that name is found in the end, links followed.
fs::path followed(const fs::path& target) {
  std::error_code none;
  const fs::path found = fs::canonical(target, none);
  return none ? target : found;
}

fs::path unused_beside(const fs::path& file) {
  return file.parent_path() / unused_name(".kv_schau-");
}

void require_writable(const fs::path& file) {
  errno = 0;
  if (!std::ofstream(file, std::ios::in | std::ios::out | std::ios::binary)) refuse(file, last_fault());
}

// The bytes of a file into one that exists or not; false with `errno` when they did not all arrive.
bool copy_bytes(const fs::path& from, const fs::path& to) {
  errno = 0;
  std::ifstream in(from, std::ios::binary);
  std::ofstream out(to, std::ios::binary);
  if (in.peek() != std::ifstream::traits_type::eof()) out << in.rdbuf();
  out.close();
  return in && out;
}

void write_to_device(const fs::path& file, const fs::path& device) {
  if (!copy_bytes(file, device)) refuse(device, last_fault());
  std::error_code ignored;
  fs::remove(file, ignored);
}

void keep_rights(const fs::path& file, const fs::path& old) {
  std::error_code fault;
  const fs::file_status status = fs::status(old, fault);
  if (!fault) fs::permissions(file, status.permissions(), fault);
  if (fault) refuse(old, fault);
}

// From another volume: first beside its place, then to it.
void move_across(const fs::path& file, const fs::path& target) {
  const fs::path beside = unused_beside(target);
  std::error_code ignored;
  std::error_code fault;
  if (!copy_bytes(file, beside)) {
    fault = last_fault();
  } else {
    fs::permissions(beside, fs::status(file).permissions(), ignored);
    fs::rename(beside, target, fault);
  }
  fs::remove(fault ? beside : file, ignored);
  if (fault) refuse(target, fault);
}

enum class Standing : std::uint8_t { nothing, file, folder, device };

// What stands there now. A device or a pipe takes bytes and no name.
Standing standing_at(const fs::path& place) {
  std::error_code ignored;
  switch (fs::status(place, ignored).type()) {
    case fs::file_type::none:
    case fs::file_type::not_found:
      return Standing::nothing;
    case fs::file_type::regular:
      return Standing::file;
    case fs::file_type::directory:
      return Standing::folder;
    default:
      return Standing::device;
  }
}

}  // namespace

std::string unused_name(const std::string& beginning) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device dice;
  std::uniform_int_distribution<std::size_t> any(0, letters.size() - 1);
  std::string name = beginning;
  for (int i = 0; i < 12; ++i) name += letters[any(dice)];
  return name;
}

void require_place(const fs::path& target) {
  const fs::path place = followed(target);
  const Standing standing = standing_at(place);
  if (standing == Standing::folder) refuse(target, std::make_error_code(std::errc::is_a_directory));
  if (standing == Standing::file) require_writable(place);
}

void put_in_place(const fs::path& file, const fs::path& target) {
  require_place(target);
  const fs::path place = followed(target);
  const Standing standing = standing_at(place);
  if (standing == Standing::device) return write_to_device(file, place);
  if (standing == Standing::file) keep_rights(file, place);
  std::error_code fault;
  fs::rename(file, place, fault);
  if (fault == std::errc::cross_device_link) return move_across(file, place);
  if (fault) refuse(target, fault);
}

WholeFile::WholeFile(fs::path target) : target_(std::move(target)) {
  require_place(target_);
  const fs::path place = followed(target_);
  if (standing_at(place) != Standing::device) unfinished_ = unused_beside(place);
  stream_.open(unfinished_.empty() ? place : unfinished_, std::ios::binary);
  if (!stream_) refuse(target_, last_fault());
  errno = 0;
}

WholeFile::~WholeFile() {
  if (unfinished_.empty()) return;
  stream_.close();
  std::error_code ignored;
  fs::remove(unfinished_, ignored);
}

void WholeFile::complete() {
  if (stream_.is_open()) stream_.close();
  if (!stream_) refuse(target_, last_fault());
}

void WholeFile::commit() {
  complete();
  if (!unfinished_.empty()) put_in_place(unfinished_, target_);
  unfinished_.clear();
}

void commit_all(std::vector<std::unique_ptr<WholeFile>>& files) {
  for (const auto& file : files) file->complete();
  for (const auto& file : files) file->commit();
}

}  // namespace schau::run
