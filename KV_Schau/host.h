#pragma once

#include <cstdio>
#include <string>
#include <vector>

/// What the commands need of the host itself: the one place of this folder with platform code.
namespace schau::host {

/// True when a stream goes to a terminal.
bool is_terminal(std::FILE* stream);

/// Makes standard output and standard error take bytes as they are, and a terminal show them as UTF-8.
void prepare_streams();

/// The arguments of the program in UTF-8, without its own name.
std::vector<std::string> arguments(int count, char** values);

}  // namespace schau::host
