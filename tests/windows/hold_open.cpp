// Holds a file open so that no other program may read or write it, as office programs do, until standard
// input ends.

#include <windows.h>

#include <cstdio>

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  const HANDLE file =
      ::CreateFileW(arguments[1], GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 1;
  std::puts("held");
  std::fflush(stdout);
  while (std::getchar() != EOF) {
  }
  return 0;
}
