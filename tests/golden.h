#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/child.h"

/// Golden variants: whole runs of the program, held to their exact bytes. A case is a folder:
///   shows.txt        one line that says what the case shows
///   command.txt      the command arguments, one a line
///   in/              the working folder before the run (may be absent)
///   out/stdout       the bytes of standard output
///   out/stderr       the bytes of standard error (absent: none)
///   out/stderr.any   present when standard error must hold something, but its text is free
///   out/files/       the files that are new after the run, or differ from their state before it
///   out/removed.txt  the files of in/ that the run removes, one a line
/// Every other file of in/ must be unchanged, and nothing else may be new.
namespace golden {

/// The files of a folder, by their names in it, and its folders.
struct FolderState {
  std::map<std::string, std::string> files;
  std::set<std::string> folders;
};

/// What a run left behind.
struct Traces {
  child::Outcome outcome;
  FolderState work;  ///< the working folder
};

/// The lines of a text; its last one may lack an end.
std::vector<std::string> lines_of(std::string_view bytes);
/// The text with its control characters and those above 126 in their escapes.
std::string escaped(std::string_view bytes);

/// Runs the program as the case says, in a new folder.
Traces run(const std::filesystem::path& variant);

/// What the run must leave behind; the text of standard error is that of the run where the case leaves it
/// free.
Traces expected(const std::filesystem::path& variant, const Traces& found);
/// What both differ in, with the first line of each difference; empty when they are equal.
std::string differences(const Traces& expected, const Traces& found);
/// The same with all lines of each difference, as the tool `diff` shows them.
std::string whole_differences(const Traces& expected, const Traces& found);

/// Makes what a run left behind what the case expects.
void accept(const std::filesystem::path& variant, const Traces& found);

}  // namespace golden
