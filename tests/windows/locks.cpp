// Holds the lock of a run on a file until standard input ends.

#include <cstdio>

#include "runtime/units.h"

int main(int count, char** arguments) {
  if (count != 2) return 2;
  runtime::lock(arguments[1]);
  std::puts("held");
  std::fflush(stdout);
  while (std::getchar() != EOF) {
  }
  return 0;
}
