#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Messages: the protocol of a run, the coded catalogue and the ErrorLevel.
namespace m_WLM_error {

/// The run's level, shared by all modules: 0 nothing, 1 warning, 2 error, 3 a reader gave up; a failed
/// allocation folds in its status 5020. It is what the last call of the dispatcher returned, so a call can
/// also lower it; the level that the dispatcher keeps for itself is another one.
extern std::int32_t ErrorLevel;

/// Status of a failed allocation.
inline constexpr std::int32_t allocation_failed = 5020;

/// What a message tells besides its code. A text is cut at its first 1000 characters and written without its
/// trailing blanks; an absent integer is 0, an absent first real -9999.99, an absent second one 0.0.
struct MessageArguments {
  std::optional<std::string_view> text1 = std::nullopt;
  std::optional<std::string_view> text2 = std::nullopt;
  std::optional<std::string_view> text3 = std::nullopt;
  std::optional<std::int32_t> int1 = std::nullopt;
  std::optional<std::int32_t> int2 = std::nullopt;
  std::optional<std::int32_t> int3 = std::nullopt;
  std::optional<float> real1 = std::nullopt;
  std::optional<float> real2 = std::nullopt;
};

/// Writes the message of a code into the protocol and returns the highest level so far. A code that the
/// suppression list holds returns 0 and does nothing; a code of a group that does not know it is written as
/// an undefined one; a code of no group writes nothing.
/// Reserved words in place of a code:
/// "INIT" (text1 protocol path, 120 characters; text2 run label, 12 characters; text3 "L": the fixed
/// suppression list) starts a run: deletes an old protocol, loads the suppression list "fehlercode.ex" from
/// the current folder if it is there, returns 0. "FINALE" closes the protocol and returns the level.
/// "ErrorLevel" (int1) replaces the level and writes nothing.
/// The protocol is created by the first message. If that or a later write fails, the program ends with an
/// I/O error.
std::int32_t MessageDispatcher(std::string_view code, const MessageArguments& arguments = {});

/// Calls the dispatcher and stores what it returns as the run's level.
void report(std::string_view code, const MessageArguments& arguments = {});

/// Folds the status of an allocation into the run's level. A failed one is told on standard error, with the
/// file whose tables it was for: it has no message.
void fold_allocation(std::int32_t status, std::string_view file_name);

/// Puts the module back into the state before "INIT", as at the start of the program. For tests.
void reset();

}  // namespace m_WLM_error
