#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"

namespace schau::network {

/// Areas in km².
struct Areas {
  double natural = 0.0;
  double canalised = 0.0;
  double impervious = 0.0;  ///< part of the canalised area

  /// Natural and canalised area: the impervious part is not added again.
  [[nodiscard]] double all() const { return natural + canalised; }
};

/// Why an area does not go on from an element.
enum class LossReason : std::uint8_t {
  basin_without_outflow,     ///< a basin without any outflow
  basin_first_outflow,       ///< a basin passes on to its second outflow only, and there is none
  other_code_first_outflow,  ///< as does a branching with a code other than 1
  no_first_outflow,          ///< a branching of code 1: the share of the first outflow
  no_second_outflow,         ///< the rest
  one_element_twice,         ///< both outflows are one element, which takes the first part only
  not_taken,                 ///< no element that could take it names it as an inflow
  in_loop,                   ///< what comes back in a loop is not added
  counted_twice              ///< several elements take the whole of it: a gain
};

/// The German words for a reason, to be read behind the name of the element.
std::string_view words_for(LossReason reason);

struct Loss {
  Element element = 0;
  LossReason reason = LossReason::not_taken;
  Areas areas;  ///< negative for a gain
};

/// What the sources bring, what comes to the outlet, and where the difference stays: the sum of the losses.
struct Balance {
  Areas sources;
  Areas outlet;
  std::vector<Loss> losses;  ///< in system order; without those too small to show
  /// Elements with an area of their own, but without a record: what they have is in none of the sums.
  std::vector<Element> without_record;
};

/// The sums of a run, in double precision (KV_Akum's own are in single precision): every element has the
/// total of all that drains into it, the areas of its own included.
struct Flow {
  std::vector<Areas> total;  ///< by element; entry 0 is not used
  Balance balance;
};

/// The part of the total of one element that goes on to another that names it as an inflow, by KV_Akum's
/// rules: a branching of code 1 divides it by its share, a basin and a branching of another code give all of
/// it to their second outflow, the other types pass everything on. A fraction as the record has it, even one
/// beyond 0 to 1.
double part_passed_on(const variant::Variant& variant, const Network& network,
                      const std::vector<Taken>& taken, Element from, Element to);

/// Accumulates in the given order (see `flow_order`). What an element passes on, and to whom, follows
/// KV_Akum; in a network with faults, which KV_Akum does not accumulate, it follows the links that the lower
/// elements name.
Flow accumulate(const variant::Variant& variant, const Network& network, const std::vector<Element>& order,
                const variant::Records& records, const std::vector<Taken>& taken);

}  // namespace schau::network
