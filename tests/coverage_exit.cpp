// Linked into the programs whose reached lines are counted (scripts/coverage.sh): an end that skips what is
// registered for it writes the counters first.

extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int status);
[[noreturn]] void __real__Exit(int status);

[[noreturn]] void __wrap__exit(int status) {
  __gcov_dump();
  __real__exit(status);
}

[[noreturn]] void __wrap__Exit(int status) {
  __gcov_dump();
  __real__Exit(status);
}
}
