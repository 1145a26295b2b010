#pragma once

#include <cstdint>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/variant/records.h"

namespace schau::network {

/// What a run takes from the record of an element, in double precision; zeros without a record.
struct Taken {
  double value = 0.0;     ///< N, K: area in km²; V: code, rounded; T: station in km
  double fraction = 0.0;  ///< N, K: degree of sealing; V: share of the first outflow
};

/// By element (entry 0 is not used). A bad number counts as 0; a share or station beyond the range
/// is infinite.
std::vector<Taken> take_values(const variant::Variant& variant, const variant::Records& records);

/// True when the line of a reach makes it one of kind 2, with its station in the next line.
bool is_kind_2(std::string_view reach_line);

/// The line with the station of a kind-2 reach: the next one, on the last line of the file that line itself.
std::uint32_t station_line(const variant::Variant& variant, std::uint32_t reach_line);

}  // namespace schau::network
