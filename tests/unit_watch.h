#pragma once

#include <set>

#include "runtime/units.h"
#include "tests/forwarding_host.h"

/// Sees which units are connected while a file is read: a procedure that opens and closes its file leaves no
/// other trace of the unit that it took.
class UnitWatch final : public ForwardingHost {
 public:
  /// The units above the standard ones that were connected at the last reading.
  std::set<int> units;

  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    units.clear();
    for (int unit = 7; unit < 1000; ++unit) {
      if (runtime::is_connected(unit)) units.insert(unit);
    }
    return ForwardingHost::read(handle, bytes, count, reason);
  }
};
