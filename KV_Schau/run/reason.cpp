#include "KV_Schau/run/reason.h"

#include <string_view>

#include "KV_Schau/variant/shown_text.h"

namespace schau::run {
namespace {

struct Reason {
  std::errc fault;
  std::string_view text;
};

constexpr Reason usual_reasons[] = {
    {std::errc::no_such_file_or_directory, "nicht vorhanden"},
    {std::errc::permission_denied, "keine Berechtigung"},
    {std::errc::operation_not_permitted, "nicht erlaubt"},
    {std::errc::read_only_file_system, "der Datenträger ist schreibgeschützt"},
    {std::errc::no_space_on_device, "der Datenträger ist voll"},
    {std::errc::file_too_large, "die zulässige Dateigröße ist überschritten"},
    {std::errc::is_a_directory, "ist ein Ordner"},
    {std::errc::not_a_directory, "ein Teil des Pfads ist kein Ordner"},
    {std::errc::executable_format_error, "ist kein ausführbares Programm"},
    {std::errc::text_file_busy, "wird gerade geschrieben"},
    {std::errc::too_many_files_open, "zu viele offene Dateien"},
    {std::errc::not_enough_memory, "der Arbeitsspeicher reicht nicht"},
    {std::errc::io_error, "Lese- oder Schreibfehler des Datenträgers"},
    {std::errc::filename_too_long, "der Name ist zu lang"},
};

}  // namespace

std::string reason_of(const std::error_code& fault) {
  for (const Reason& reason : usual_reasons) {
    if (fault == reason.fault) return std::string(reason.text);
  }
  // In the words of the language's own errors where there are any: those of a system may be in any encoding.
  return variant::shown_utf8(fault.default_error_condition().message());
}

}  // namespace schau::run
