#pragma once

#include <string>
#include <variant>

#include "KV_Schau/exit_status.h"
#include "KV_Schau/variant/path.h"

namespace schau {

/// The variant that an argument names. When it names none, the reason and a way out are told on standard
/// error, and the status of that is returned: `usage` for a name that KV_Akum cannot take, `failed` for a
/// missing file.
std::variant<variant::VariantPath, ExitStatus> variant_of(const std::string& argument);

}  // namespace schau
