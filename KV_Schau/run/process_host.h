#pragma once

#include <optional>
#include <string_view>

/// What only the host's own calls tell about programs: the one place of this room with platform code.
namespace schau::run::host {

/// The signal that ended a program, by the status that the system keeps of it; none when it ended by itself.
std::optional<int> signal_of(int status);

/// What a signal means, in German; empty for one that says nothing.
std::string_view meaning_of_signal(int signal);

/// Sets the host's signals as `prepare_for_processes` promises.
void prepare_signals();

}  // namespace schau::run::host
