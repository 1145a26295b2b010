// Ends as a program does that reads where nothing is.

int main() {
  const volatile int* const nowhere = nullptr;
  return *nowhere;
}
