#pragma once

#include <string>
#include <string_view>

#include "KV_Schau/compare/comparison.h"

/// German words for what a comparison says.
namespace schau::compare {

std::string_view words_for(Sum sum);
std::string_view words_for(Input input);

std::string shown(variant::NameKey name);
/// "T0020, T0030": those that are not blank; "keinem" without any.
std::string shown(const Links& links);
/// A value of an input with its unit: "12.4 km²", "65 %", "1".
std::string shown_input(Input input, double value);
/// What became of an element: "Fläche 12.4 → 12.9 km²", "Ablauf T0020 statt P0010".
std::string words_for(const Change& change);
/// The shortest form: "N0010 (Fläche)", "N0080 (neu)".
std::string words_for_cause(const Change& change);

/// "neu.nfl:12"; empty without a place.
std::string shown_place(const Comparison& comparison, const Change& change);

}  // namespace schau::compare
