#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// The others need what it declares.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>

#include "KV_Schau/host.h"

namespace schau::host {
namespace {

// Null when a stream goes elsewhere.
HANDLE console_of(std::FILE* stream) {
  const HANDLE handle = ::GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  return ::GetConsoleMode(handle, &mode) == FALSE ? nullptr : handle;
}

std::wstring wide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  const int needed = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(std::max(needed, 0)), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text.data(), needed);
  return text;
}

// A console takes so much at a time; the two halves of a character stay together.
std::wstring_view next_piece(std::wstring_view text) {
  constexpr std::size_t most = 8000;
  const std::wstring_view piece = text.substr(0, most);
  return piece.size() < text.size() && IS_HIGH_SURROGATE(piece.back()) ? piece.substr(0, most - 1) : piece;
}

bool write_to_console(HANDLE console, std::wstring_view text) {
  while (!text.empty()) {
    const std::wstring_view piece = next_piece(text);
    DWORD written = 0;
    if (::WriteConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &written, nullptr) == FALSE)
      return false;
    text.remove_prefix(piece.size());
  }
  return true;
}

}  // namespace

bool is_terminal(std::FILE* stream) {
  return console_of(stream) != nullptr;
}

void prepare_streams() {
  for (std::FILE* const stream : {stdout, stderr}) {
    ::_setmode(::_fileno(stream), _O_BINARY);
    DWORD mode = 0;
    const HANDLE console = console_of(stream);
    if (console == nullptr || ::GetConsoleMode(console, &mode) == FALSE) continue;
    ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
}

// Bytes would reach a console one by one, and in its code page.
bool write(std::FILE* stream, std::string_view text) {
  const HANDLE console = console_of(stream);
  if (console != nullptr) return write_to_console(console, wide(text));
  return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

std::vector<std::string> arguments(int /*count*/, char** /*values*/) {
  // The given ones have lost what the system's code page lacks.
  std::vector<std::string> texts;
  int count = 0;
  wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  for (int i = 1; wide != nullptr && i < count; ++i) {
    const std::u8string text = std::filesystem::path(wide[i]).u8string();
    texts.emplace_back(text.begin(), text.end());
  }
  ::LocalFree(wide);
  return texts;
}

}  // namespace schau::host

// The standard library makes paths of texts character by character through this procedure, and of the C
// runtime it would get single bytes. It gets UTF-8 in its place (the linker's option --wrap), so that a text
// is a path here as anywhere. A character beyond 16 bits is handed out in two halves, the second of them kept
// in the state.
extern "C" std::size_t __wrap_mbrtowc(wchar_t* to, const char* from, std::size_t count,
                                      std::mbstate_t* state) {
  if (*state != 0) {
    *to = static_cast<wchar_t>(*state);
    *state = 0;
    return 1;
  }
  const auto first = static_cast<unsigned char>(*from);
  const int length = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  wchar_t halves[2] = {};
  const int given = std::min(length, static_cast<int>(std::min<std::size_t>(count, 4)));
  const int wide = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, from, given, halves, 2);
  *to = wide == 0 ? first : halves[0];
  if (wide == 0) return 1;
  if (wide == 1) return *to == 0 ? 0 : static_cast<std::size_t>(length);
  *state = halves[1];
  return static_cast<std::size_t>(length) - 1;
}
