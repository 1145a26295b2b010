#include "tests/golden.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "tests/program.h"
#include "tests/test_files.h"

namespace golden {
namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;

std::string bytes_if_there(const fs::path& path) {
  return fs::exists(path) ? read_bytes(path) : std::string();
}

FolderState state_of(const fs::path& folder) {
  FolderState state;
  if (!fs::exists(folder)) return state;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().lexically_relative(folder).generic_string();
    if (entry.is_directory()) {
      state.folders.insert(name);
    } else {
      state.files[name] = read_bytes(entry.path());
    }
  }
  return state;
}

FolderState expected_work(const fs::path& variant) {
  FolderState state = state_of(variant / "in");
  for (const std::string& name : lines_of(bytes_if_there(variant / "out" / "removed.txt"))) {
    if (state.files.erase(name) == 0) throw std::runtime_error("removed.txt names an unknown file: " + name);
  }
  const FolderState written = state_of(variant / "out" / "files");
  for (const auto& [name, bytes] : written.files) state.files[name] = bytes;
  state.folders.insert(written.folders.begin(), written.folders.end());
  return state;
}

// The lines of both texts at the first difference; empty when they are equal.
std::string difference(const std::string& what, const std::string& expected, const std::string& found) {
  if (expected == found) return {};
  const std::vector<std::string> wanted_lines = lines_of(expected);
  const std::vector<std::string> found_lines = lines_of(found);
  const auto [wanted, other] = std::ranges::mismatch(wanted_lines, found_lines);
  std::ostringstream out;
  out << what << " differs (expected " << expected.size() << " bytes, found " << found.size() << ")";
  if (wanted == wanted_lines.end() && other == found_lines.end()) {
    out << " in the end of its last line only\n";
    return out.str();
  }
  const auto show = [&out](const char* label, auto line, auto end) {
    if (line == end) {
      out << label << "(no such line)\n";
    } else {
      out << label << '|' << escaped(*line) << "|\n";
    }
  };
  out << ", first in line " << wanted - wanted_lines.begin() + 1 << ":\n";
  show("  expected: ", wanted, wanted_lines.end());
  show("  found   : ", other, found_lines.end());
  return out.str();
}

std::string folder_differences(const FolderState& expected, const FolderState& found) {
  std::string text;
  for (const auto& [name, bytes] : expected.files) {
    const auto file = found.files.find(name);
    text += file == found.files.end() ? name + " is missing\n" : difference(name, bytes, file->second);
  }
  for (const auto& [name, bytes] : found.files) {
    if (!expected.files.contains(name)) {
      text += name + " must not be there; it holds:\n" + escaped(bytes) + "\n";
    }
  }
  for (const std::string& name : found.folders) {
    if (!expected.folders.contains(name)) text += "folder " + name + " must not be there\n";
  }
  for (const std::string& name : expected.folders) {
    if (!found.folders.contains(name)) text += "folder " + name + " is missing\n";
  }
  return text;
}

// The traces as texts of a folder, a file each; `diff` compares them.
void write_texts(const Traces& traces, const fs::path& folder) {
  std::map<std::string, std::string> texts;
  for (const auto& [name, bytes] : traces.work.files) texts["files/" + name] = bytes;
  texts["ending"] = traces.outcome.ending;
  texts["stdout"] = traces.outcome.out;
  texts["stderr"] = traces.outcome.err;
  for (const auto& [name, bytes] : texts) {
    std::string text;
    for (const std::string& line : lines_of(bytes)) text.append(escaped(line)).append("\n");
    if (!text.empty() && !bytes.ends_with('\n')) text.pop_back();
    fs::create_directories((folder / name).parent_path());
    write_bytes(folder / name, text);
  }
}

// A file that is there when it has something to hold.
void write_or_remove(const fs::path& path, const std::string& bytes) {
  if (bytes.empty()) {
    fs::remove(path);
  } else {
    write_bytes(path, bytes);
  }
}

void accept_work(const fs::path& variant, const FolderState& work) {
  const FolderState before = state_of(variant / "in");
  const fs::path files = variant / "out" / "files";
  fs::remove_all(files);
  for (const std::string& name : work.folders) {
    if (!before.folders.contains(name)) fs::create_directories(files / name);
  }
  for (const auto& [name, bytes] : work.files) {
    const auto old = before.files.find(name);
    if (old != before.files.end() && old->second == bytes) continue;
    fs::create_directories((files / name).parent_path());
    write_bytes(files / name, bytes);
  }
  std::string removed;
  for (const auto& [name, bytes] : before.files) {
    if (!work.files.contains(name)) removed += name + "\n";
  }
  write_or_remove(variant / "out" / "removed.txt", removed);
}

}  // namespace

std::vector<std::string> lines_of(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    lines.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return lines;
}

std::string escaped(std::string_view bytes) {
  constexpr std::string_view hex = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\') {
      text += "\\\\";
    } else if (byte >= 0x20 && byte < 0x7f) {
      text += c;
    } else if (c == '\r') {
      text += "\\r";
    } else if (c == '\t') {
      text += "\\t";
    } else {
      text += "\\x";
      text += hex[byte >> 4];
      text += hex[byte & 0x0f];
    }
  }
  return text;
}

Traces run(const fs::path& variant) {
  const test_files::TemporaryFolder work;
  if (fs::exists(variant / "in")) fs::copy(variant / "in", work.path(), fs::copy_options::recursive);
  Traces traces;
  traces.outcome =
      program::run({.arguments = lines_of(read_bytes(variant / "command.txt")), .folder = work.path()});
  traces.work = state_of(work.path());
  return traces;
}

Traces expected(const fs::path& variant, const Traces& found) {
  const fs::path out = variant / "out";
  Traces traces;
  traces.outcome.ending = "exit status 0";
  traces.outcome.out = bytes_if_there(out / "stdout");
  if (!fs::exists(out / "stderr.any")) {
    traces.outcome.err = bytes_if_there(out / "stderr");
  } else {
    traces.outcome.err = found.outcome.err.empty() ? "any text\n" : found.outcome.err;
  }
  traces.work = expected_work(variant);
  return traces;
}

std::string differences(const Traces& expected, const Traces& found) {
  return difference("the ending", expected.outcome.ending, found.outcome.ending) +
         difference("standard output", expected.outcome.out, found.outcome.out) +
         difference("standard error", expected.outcome.err, found.outcome.err) +
         folder_differences(expected.work, found.work);
}

std::string whole_differences(const Traces& expected, const Traces& found) {
  const test_files::TemporaryFolder folder;
  write_texts(expected, folder.path() / "expected");
  write_texts(found, folder.path() / "found");
  const child::Outcome diff = child::run([&] {
    fs::current_path(folder.path());
    execlp("diff", "diff", "-ruN", "expected", "found", nullptr);
  });
  if (diff.exit_status > 1 || diff.exit_status < 0) throw std::runtime_error("diff: " + diff.ending);
  return diff.out;
}

void accept(const fs::path& variant, const Traces& found) {
  const fs::path out = variant / "out";
  fs::create_directories(out);
  write_bytes(out / "stdout", found.outcome.out);
  if (!fs::exists(out / "stderr.any")) write_or_remove(out / "stderr", found.outcome.err);
  accept_work(variant, found.work);
}

}  // namespace golden
