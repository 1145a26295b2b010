#pragma once

namespace schau {

/// How a command ends. Of several variants the highest counts.
enum class ExitStatus : int {
  clean = 0,
  findings = 1,   ///< a result, with findings
  no_result = 2,  ///< no result because of findings
  failed = 3,     ///< no result because a file, the disk or KV_Akum itself failed
  usage = 64      ///< wrong usage
};

/// The higher of two.
constexpr ExitStatus worse(ExitStatus left, ExitStatus right) {
  return left < right ? right : left;
}

}  // namespace schau
