// Runs the program on every variant of the folder of golden variants and holds all that it leaves behind
// against the expected bytes.
//
// A case is a folder:
//   shows.txt        one line that says what the case shows
//   command.txt      the command arguments, one a line
//   in/              the working folder before the run (may be absent)
//   out/stdout       the bytes of standard output
//   out/stderr       the bytes of standard error (absent: none)
//   out/stderr.any   present when standard error must hold something, but its text is free
//   out/files/       the files that are new after the run, or differ from their state before it
//   out/removed.txt  the files of in/ that the run removes, one a line
// Every other file of in/ must be unchanged, and nothing else may be new.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kTimeout{20};

std::string ReadBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string ReadBytesIfThere(const fs::path& path) {
  return fs::exists(path) ? ReadBytes(path) : std::string();
}

std::vector<std::string> Lines(std::string_view bytes) {
  std::vector<std::string> lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    lines.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return lines;
}

std::string Escaped(std::string_view bytes) {
  constexpr std::string_view kHex = "0123456789abcdef";
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
      text += kHex[byte >> 4];
      text += kHex[byte & 0x0f];
    }
  }
  return text;
}

/// The lines of both texts around the first difference, or an empty text when they are equal.
std::string Difference(const std::string& what, const std::string& expected, const std::string& actual) {
  if (expected == actual) return {};
  const std::vector<std::string> wanted = Lines(expected);
  const std::vector<std::string> found = Lines(actual);
  std::size_t line = 0;
  while (line < wanted.size() && line < found.size() && wanted[line] == found[line]) ++line;
  std::ostringstream out;
  out << what << " differs (expected " << expected.size() << " bytes, found " << actual.size() << ")";
  if (line == wanted.size() && line == found.size()) {
    out << " in the end of its last line only\n";
    return out.str();
  }
  out << ", first in line " << line + 1 << ":\n";
  const auto show = [&](const char* label, const std::vector<std::string>& lines) {
    out << "  " << label << ": ";
    if (line < lines.size()) {
      out << '|' << Escaped(lines[line]) << "|\n";
    } else {
      out << "(no such line)\n";
    }
  };
  show("expected", wanted);
  show("found   ", found);
  return out.str();
}

struct FolderState {
  std::map<std::string, std::string> files;
  std::set<std::string> folders;
};

FolderState StateOf(const fs::path& folder) {
  FolderState state;
  if (!fs::exists(folder)) return state;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().lexically_relative(folder).generic_string();
    if (entry.is_directory()) {
      state.folders.insert(name);
    } else {
      state.files[name] = ReadBytes(entry.path());
    }
  }
  return state;
}

/// What the working folder must hold after the run.
FolderState ExpectedState(const fs::path& variant) {
  FolderState state = StateOf(variant / "in");
  for (const std::string& name : Lines(ReadBytesIfThere(variant / "out" / "removed.txt"))) {
    if (state.files.erase(name) == 0) throw std::runtime_error("removed.txt names an unknown file: " + name);
  }
  const FolderState written = StateOf(variant / "out" / "files");
  for (const auto& [name, bytes] : written.files) state.files[name] = bytes;
  state.folders.insert(written.folders.begin(), written.folders.end());
  return state;
}

std::string Differences(const FolderState& expected, const FolderState& actual) {
  std::string text;
  for (const auto& [name, bytes] : expected.files) {
    const auto found = actual.files.find(name);
    if (found == actual.files.end()) {
      text += name + " is missing\n";
    } else {
      text += Difference(name, bytes, found->second);
    }
  }
  for (const auto& [name, bytes] : actual.files) {
    if (expected.files.count(name) == 0)
      text += name + " must not be there; it holds:\n" + Escaped(bytes) + "\n";
  }
  for (const std::string& name : actual.folders) {
    if (expected.folders.count(name) == 0) text += "folder " + name + " must not be there\n";
  }
  for (const std::string& name : expected.folders) {
    if (actual.folders.count(name) == 0) text += "folder " + name + " is missing\n";
  }
  return text;
}

/// A folder that lives as long as its owner.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "golden-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot create " + pattern);
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  TemporaryFolder(TemporaryFolder&&) = delete;
  TemporaryFolder& operator=(TemporaryFolder&&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

bool Redirect(int descriptor, const char* path, int flags) {
  const int file = open(path, flags | O_CLOEXEC, 0600);
  return file >= 0 && dup2(file, descriptor) == descriptor;
}

/// Runs the program in a folder; returns its wait status, or -1 after the timeout.
int RunProgram(const std::vector<std::string>& arguments, const fs::path& folder, const fs::path& out,
               const fs::path& err) {
  std::string program = KV_AKUM_PROGRAM;
  std::vector<std::string> words = arguments;
  std::vector<char*> argv{program.data()};
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start a process");
  if (child == 0) {
    const bool ready = chdir(folder.c_str()) == 0 && Redirect(STDIN_FILENO, "/dev/null", O_RDONLY) &&
                       Redirect(STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC) &&
                       Redirect(STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
    if (ready) execv(program.c_str(), argv.data());
    _exit(127);
  }

  const auto end = std::chrono::steady_clock::now() + kTimeout;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(child, SIGKILL);
      waitpid(child, &status, 0);
      return -1;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return status;
}

struct GoldenCase {
  std::string name;
};

void PrintTo(const GoldenCase& golden, std::ostream* out) {
  *out << golden.name;
}

std::vector<GoldenCase> GoldenCases() {
  std::vector<GoldenCase> cases;
  std::error_code missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(KV_VARIANTS_DIR, missing)) {
    if (entry.is_directory()) cases.push_back({entry.path().filename().string()});
  }
  std::sort(cases.begin(), cases.end(),
            [](const GoldenCase& a, const GoldenCase& b) { return a.name < b.name; });
  return cases;
}

class GoldenVariant : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenVariant, LeavesTheExpectedBytes) {
  const fs::path variant = fs::path(KV_VARIANTS_DIR) / GetParam().name;
  const std::string shows = ReadBytes(variant / "shows.txt");
  SCOPED_TRACE(shows);
  ASSERT_EQ(Lines(shows).size(), 1U) << "shows.txt holds one line";

  const TemporaryFolder temporary;
  const fs::path work = temporary.path() / "work";
  const fs::path out = temporary.path() / "stdout";
  const fs::path err = temporary.path() / "stderr";
  fs::create_directory(work);
  if (fs::exists(variant / "in")) fs::copy(variant / "in", work, fs::copy_options::recursive);

  const int status = RunProgram(Lines(ReadBytes(variant / "command.txt")), work, out, err);
  ASSERT_NE(status, -1) << "no end after " << kTimeout.count() << " s";
  ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status) << "\n" << Escaped(ReadBytes(err));
  EXPECT_EQ(WEXITSTATUS(status), 0) << Escaped(ReadBytes(err));

  std::string differences =
      Difference("standard output", ReadBytes(variant / "out" / "stdout"), ReadBytes(out));
  if (fs::exists(variant / "out" / "stderr.any")) {
    if (ReadBytes(err).empty()) differences += "a line on standard error is missing\n";
  } else {
    differences += Difference("standard error", ReadBytesIfThere(variant / "out" / "stderr"), ReadBytes(err));
  }
  differences += Differences(ExpectedState(variant), StateOf(work));
  EXPECT_TRUE(differences.empty()) << differences;
}

INSTANTIATE_TEST_SUITE_P(Variants, GoldenVariant, testing::ValuesIn(GoldenCases()),
                         [](const testing::TestParamInfo<GoldenCase>& golden) { return golden.param.name; });

TEST(GoldenVariants, AreThere) {
  EXPECT_FALSE(GoldenCases().empty());
}

}  // namespace
