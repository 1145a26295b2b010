#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

/// What the commands need of the host itself: the one place of this folder with platform code.
namespace schau::host {

/// True when a stream goes to a terminal.
bool is_terminal(std::FILE* stream);

/// Makes standard output and standard error take bytes as they are, and a terminal understand the usual
/// sequences for colours.
void prepare_streams();

/// Writes a text in UTF-8 to a stream; a terminal shows its letters. False when not all could be written.
bool write(std::FILE* stream, std::string_view text);

/// The arguments of the program in UTF-8, without its own name.
std::vector<std::string> arguments(int count, char** values);

}  // namespace schau::host
