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
#include <cstdlib>
#include <cwchar>
#include <filesystem>

#include "KV_Schau/host.h"

namespace schau::host {
namespace {

UINT code_page_before = 0;

void restore_code_page() {
  ::SetConsoleOutputCP(code_page_before);
}

// Colours and the line of progress are sequences of characters.
void understand_sequences(DWORD stream) {
  const HANDLE console = ::GetStdHandle(stream);
  DWORD mode = 0;
  if (::GetConsoleMode(console, &mode) == FALSE) return;
  ::SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

}  // namespace

bool is_terminal(std::FILE* stream) {
  return ::_isatty(::_fileno(stream)) != 0;
}

void prepare_streams() {
  for (std::FILE* const stream : {stdout, stderr}) ::_setmode(::_fileno(stream), _O_BINARY);
  for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) understand_sequences(stream);
  // The console belongs to others too, who may count on its code page.
  code_page_before = ::GetConsoleOutputCP();
  if (code_page_before != 0 && ::SetConsoleOutputCP(CP_UTF8) != FALSE) std::atexit(restore_code_page);
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
