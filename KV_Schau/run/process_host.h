#pragma once

#include <optional>
#include <string>

/// What only the host's own calls tell about programs: the one place of this room with platform code.
namespace schau::run::host {

/// The signal (on Windows the exception) that ended a program, by the status that the system keeps of it;
/// none when it ended by itself.
std::optional<int> signal_of(int status);

/// A signal in German, with its number and, where that is known, its meaning.
std::string shown_signal(int signal);

/// Sets the host's signals as `prepare_for_processes` promises.
void prepare_signals();

}  // namespace schau::run::host
