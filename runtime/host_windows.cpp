#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#define UNICODE
#include <windows.h>
// Does not include what it needs.
#include <shellapi.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <memory>
#include <string_view>
#include <vector>

#include "runtime/host.h"

namespace runtime {
namespace {

std::error_code error(DWORD code) {
  return {static_cast<int>(code), std::system_category()};
}

std::error_code last_error() {
  return error(::GetLastError());
}

// Texts. A path is held in the system's code page, as the suite's texts are; one with a character that the
// code page lacks is held in UTF-8.

constexpr UINT code_page = CP_ACP;

// Empty when a byte means nothing there.
std::wstring decoded(UINT encoding, std::string_view text) {
  const int size = static_cast<int>(text.size());
  const int needed = ::MultiByteToWideChar(encoding, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(std::max(needed, 0)), L'\0');
  ::MultiByteToWideChar(encoding, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(), needed);
  return wide;
}

std::string encoded(UINT encoding, std::wstring_view text, DWORD flags = 0, BOOL* lossy = nullptr) {
  const int size = static_cast<int>(text.size());
  const int needed = ::WideCharToMultiByte(encoding, flags, text.data(), size, nullptr, 0, nullptr, lossy);
  std::string bytes(static_cast<std::size_t>(std::max(needed, 0)), '\0');
  ::WideCharToMultiByte(encoding, flags, text.data(), size, bytes.data(), needed, nullptr, nullptr);
  return bytes;
}

bool fits_code_page(std::wstring_view text) {
  if (::GetACP() == CP_UTF8) return true;
  BOOL lossy = FALSE;
  encoded(code_page, text, WC_NO_BEST_FIT_CHARS, &lossy);
  return lossy == FALSE;
}

std::string path_text(std::wstring_view wide) {
  return encoded(fits_code_page(wide) ? code_page : CP_UTF8, wide);
}

// Bytes that would be UTF-8 of characters within the code page are texts of the code page: `path_text` would
// not have written them so.
std::wstring wide_text(std::string_view text) {
  const std::wstring beyond = decoded(CP_UTF8, text);
  if (!beyond.empty() && !fits_code_page(beyond)) return beyond;
  return decoded(code_page, text);
}

// Paths.

std::wstring full_path(const std::wstring& path) {
  const DWORD needed = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  full.resize(::GetFullPathNameW(path.c_str(), needed, full.data(), nullptr));
  return full;
}

// As the system's calls take it. From the length on that a folder's path may have, only the form without any
// further interpretation is taken.
std::wstring system_path(const std::string& path) {
  constexpr std::size_t longest_plain_path = MAX_PATH - 13;
  std::wstring wide = wide_text(path.c_str());
  const std::wstring full = full_path(wide);
  if (full.size() < longest_plain_path || full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
    return wide;
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC\\" + full.substr(2);
  return L"\\\\?\\" + full;
}

// Handles.

// Of a handle only the lower 32 bits count, and none that the system gives out is below 4.
int number_of(HANDLE handle) {
  return static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

HANDLE handle_of(int number) {
  switch (number) {
    case standard_input_handle:
      return ::GetStdHandle(STD_INPUT_HANDLE);
    case standard_output_handle:
      return ::GetStdHandle(STD_OUTPUT_HANDLE);
    case standard_error_handle:
      return ::GetStdHandle(STD_ERROR_HANDLE);
    default:
      return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(number));
  }
}

struct Closer {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const {
    if (handle != INVALID_HANDLE_VALUE) ::CloseHandle(handle);
  }
};
using OwnHandle = std::unique_ptr<void, Closer>;

constexpr DWORD shared_with_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE open_path(const std::wstring& path, DWORD access, DWORD disposition, DWORD flags = 0) {
  return ::CreateFileW(path.c_str(), access, shared_with_all, nullptr, disposition,
                       FILE_ATTRIBUTE_NORMAL | flags, nullptr);
}

std::uint64_t joined(DWORD high, DWORD low) {
  return (std::uint64_t{high} << 32U) | low;
}

bool facts_of(HANDLE handle, FileFacts& facts) {
  facts = {.kind = FileKind::other};
  if (::GetFileType(handle) != FILE_TYPE_DISK) return true;
  BY_HANDLE_FILE_INFORMATION known{};
  if (::GetFileInformationByHandle(handle, &known) == FALSE) return false;
  const bool folder = (known.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  facts = {.kind = folder ? FileKind::folder : FileKind::file,
           .size = joined(known.nFileSizeHigh, known.nFileSizeLow),
           .volume = known.dwVolumeSerialNumber,
           .number = joined(known.nFileIndexHigh, known.nFileIndexLow),
           .linked = known.nNumberOfLinks > 1};
  return true;
}

// Other points of that kind are plain files, kept elsewhere until they are read.
bool is_link(const std::wstring& path) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

bool nothing_can_be_found(DWORD reason) {
  switch (reason) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_ACCESS_DENIED:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_CANT_RESOLVE_FILENAME:
    case ERROR_FILENAME_EXCED_RANGE:
      return true;
    default:
      return false;
  }
}

// Whole files.

// The n-th name beside a file for the one that is to take its place.
std::string own_name_beside(const std::string& path, int n) {
  std::string name = path + "." + std::to_string(::GetCurrentProcessId());
  if (n > 0) name += "-" + std::to_string(n);
  return name + ".neu";
}

// Under the first such name that is free: before, another run may have had the same process number.
HANDLE create_beside(const std::string& path, std::string& name) {
  constexpr int most_names = 1000;
  HANDLE handle = INVALID_HANDLE_VALUE;
  for (int n = 0; n < most_names && handle == INVALID_HANDLE_VALUE; ++n) {
    name = own_name_beside(path, n);
    handle = open_path(system_path(name), GENERIC_READ | GENERIC_WRITE, CREATE_NEW);
    if (handle == INVALID_HANDLE_VALUE && ::GetLastError() != ERROR_FILE_EXISTS) break;
  }
  return handle;
}

// False when another program keeps what stands there in its place.
bool may_leave_its_place(const std::wstring& path) {
  const OwnHandle old(open_path(path, DELETE, OPEN_EXISTING));
  return old.get() != INVALID_HANDLE_VALUE || ::GetLastError() == ERROR_FILE_NOT_FOUND;
}

// What stands there hands its rights on; the second call is for a place where nothing stands.
bool take_place(const std::wstring& file, const std::wstring& place) {
  return ::ReplaceFileW(place.c_str(), file.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                        nullptr) != FALSE ||
         ::MoveFileExW(file.c_str(), place.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
}

// The command interpreter.

std::wstring interpreter() {
  const wchar_t* const named = _wgetenv(L"COMSPEC");
  return named != nullptr ? named : L"cmd.exe";
}

class WindowsHost final : public Host {
 public:
  [[nodiscard]] char separator() const override { return '\\'; }
  [[nodiscard]] const char* line_end() const override { return "\r\n"; }

  FileFacts look(const std::string& path, std::error_code& reason) override {
    const std::wstring wide = system_path(path);
    const OwnHandle found(open_path(wide, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS));
    FileFacts facts;
    const bool known = found.get() != INVALID_HANDLE_VALUE && facts_of(found.get(), facts);
    if (!known && !nothing_can_be_found(::GetLastError())) reason = last_error();
    if (is_link(wide)) facts.linked = true;
    return facts;
  }

  int open(const std::string& path, Access access, std::error_code& reason) override {
    const DWORD wanted = access == Access::read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
    const DWORD disposition = access == Access::create ? OPEN_ALWAYS : OPEN_EXISTING;
    const HANDLE handle = open_path(system_path(path), wanted, disposition);
    if (handle == INVALID_HANDLE_VALUE) {
      reason = last_error();
      return -1;
    }
    return number_of(handle);
  }

  bool facts(int handle, FileFacts& facts, std::error_code& reason) override {
    if (facts_of(handle_of(handle), facts)) return true;
    reason = last_error();
    return false;
  }

  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    DWORD got = 0;
    if (::ReadFile(handle_of(handle), bytes, at_a_time(count), &got, nullptr) != FALSE) return got;
    if (::GetLastError() == ERROR_BROKEN_PIPE || ::GetLastError() == ERROR_HANDLE_EOF) return 0;
    reason = last_error();
    return -1;
  }

  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    DWORD put = 0;
    do {
      if (::WriteFile(handle_of(handle), bytes, at_a_time(count), &put, nullptr) == FALSE) {
        reason = last_error();
        return -1;
      }
      if (put == 0 && count > 0) ::Sleep(1);
    } while (put == 0 && count > 0);
    return put;
  }

  bool seek(int handle, std::uint64_t place, std::error_code& reason) override {
    LARGE_INTEGER wanted{};
    wanted.QuadPart = static_cast<LONGLONG>(place);
    if (::SetFilePointerEx(handle_of(handle), wanted, nullptr, FILE_BEGIN) != FALSE) return true;
    reason = last_error();
    return false;
  }

  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override {
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    if (::SetFileInformationByHandle(handle_of(handle), FileEndOfFileInfo, &end, sizeof end) != FALSE)
      return true;
    reason = last_error();
    return false;
  }

  bool close(int handle, std::error_code& reason) override {
    if (::CloseHandle(handle_of(handle)) != FALSE) return true;
    reason = last_error();
    return false;
  }

  bool remove(const std::string& path, std::error_code& reason) override {
    if (::DeleteFileW(system_path(path).c_str()) != FALSE) return true;
    reason = last_error();
    return false;
  }

  Successor create_successor(const std::string& path, std::error_code& reason) override {
    Successor successor;
    if (!may_leave_its_place(system_path(path))) {
      reason = last_error();
      return successor;
    }
    const HANDLE handle = create_beside(path, successor.path);
    if (handle == INVALID_HANDLE_VALUE) {
      reason = last_error();
    } else {
      successor.handle = number_of(handle);
    }
    return successor;
  }

  bool succeed(const Successor& successor, const std::string& path, std::error_code& reason) override {
    const std::wstring file = system_path(successor.path);
    if (close(successor.handle, reason)) {
      if (take_place(file, system_path(path))) return true;
      reason = last_error();
    }
    ::DeleteFileW(file.c_str());
    return false;
  }

  void discard(const Successor& successor) override {
    std::error_code ignored;
    close(successor.handle, ignored);
    remove(successor.path, ignored);
  }

  bool lock(int handle, std::error_code& reason) override {
    // A locked byte cannot be read by others: one that no file has.
    OVERLAPPED place{};
    place.OffsetHigh = 0x7fff'ffff;
    if (::LockFileEx(handle_of(handle), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                     &place) != FALSE ||
        ::GetLastError() != ERROR_LOCK_VIOLATION) {
      return true;
    }
    reason = last_error();
    return false;
  }

  void run_command(const std::string& command_line) override {
    // The command asks nobody: without an input it cannot wait for one.
    SECURITY_ATTRIBUTES inherited{
        .nLength = sizeof inherited, .lpSecurityDescriptor = nullptr, .bInheritHandle = TRUE};
    const OwnHandle nothing(::CreateFileW(L"NUL", GENERIC_READ | GENERIC_WRITE, shared_with_all, &inherited,
                                          OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = start.hStdOutput = start.hStdError = nothing.get();
    const std::wstring program = interpreter();
    std::wstring line = L"\"" + program + L"\" /d /s /c \"" + wide_text(command_line) + L"\"";
    PROCESS_INFORMATION child{};
    if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                         &start, &child) == FALSE) {
      return;
    }
    const OwnHandle process(child.hProcess);
    const OwnHandle thread(child.hThread);
    ::WaitForSingleObject(process.get(), INFINITE);
  }

  std::int64_t clock_ticks() override {
    using Milliseconds = std::chrono::milliseconds;
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  std::int64_t ticks_per_second() override { return 1000; }

 private:
  // The system's calls count in 32 bits.
  static DWORD at_a_time(std::size_t count) {
    constexpr std::size_t most = std::size_t{1} << 30U;
    return static_cast<DWORD>(std::min(count, most));
  }
};

Host* replacement_host = nullptr;

}  // namespace

Host& host() {
  static WindowsHost machine;
  return replacement_host != nullptr ? *replacement_host : machine;
}

void set_host(Host* replacement) {
  replacement_host = replacement;
}

std::span<const char* const> path_arguments(int /*count*/, const char* const* /*values*/) {
  // The given ones have lost what the code page lacks, and their patterns are replaced by names of files.
  static std::vector<std::string> texts;
  static std::vector<const char*> arguments;
  int count = 0;
  wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  for (int i = 0; wide != nullptr && i < count; ++i) texts.push_back(path_text(wide[i]));
  ::LocalFree(wide);
  for (const std::string& text : texts) arguments.push_back(text.c_str());
  return arguments;
}

void advise_large_pages(void* /*memory*/, std::size_t /*bytes*/) {}

void prepare_process() {
  // A medium that is not there is an error of the call and no question to the user.
  ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX | SEM_NOGPFAULTERRORBOX);
}

}  // namespace runtime
