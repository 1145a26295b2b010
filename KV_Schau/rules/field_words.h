#pragma once

#include <string>
#include <string_view>

#include "KV_Schau/rules/context.h"
#include "KV_Schau/rules/fields.h"

namespace schau::rules {

/// "in der Fläche", "im Anteil" ...
std::string_view in_words(FieldKind kind);
/// "Die Fläche", "Der Anteil" ...
std::string_view subject_words(FieldKind kind);

/// "in ihren Spalten", "in seinen Spalten".
std::string_view in_its_columns(FieldKind kind);

/// The text of a field in quotation marks.
std::string quoted(const Context& context, const Field& field);

/// "KV_Akum liest 64", or that it reports the field and gives no result.
std::string reading_words(const Field& field);

/// A number with a comma as it was meant: "64.50"; empty when that is not clear.
std::string with_point(const std::string& text);

/// "gemeint: 64.50"; for a field that the run reads without a word also what it reads.
std::string comma_hint(const Context& context, const Field& field);

}  // namespace schau::rules
