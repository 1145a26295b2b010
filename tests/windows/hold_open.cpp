// Holds a file open until standard input ends: so that no other program may read or write it, as office
// programs do, or with "shared" so that others may do both but not put another file in its place, as many
// programs do.

#include <windows.h>

#include <cstdio>
#include <string_view>

int wmain(int count, wchar_t** arguments) {
  if (count < 2) return 2;
  const bool shared = count == 3 && std::wstring_view(arguments[2]) == L"shared";
  const HANDLE file =
      ::CreateFileW(arguments[1], GENERIC_READ, shared ? FILE_SHARE_READ | FILE_SHARE_WRITE : 0, nullptr,
                    OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  std::puts("held");
  std::fflush(stdout);
  while (std::getchar() != EOF) {
  }
  return 0;
}
