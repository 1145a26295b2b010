// Runs a command line in the command interpreter.

#include "runtime/command.h"

int main(int count, char** arguments) {
  if (count != 2) return 2;
  runtime::execute_command(arguments[1]);
  return 0;
}
