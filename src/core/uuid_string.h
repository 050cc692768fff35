// Fresh random UUIDs as text, for the identities of undo logs, dry-run steps and the like.
#pragma once

#include <string>

namespace orrelin {

// Returns a new random (version 4) UUID in upper-case canonical form, "3F2504E0-4F89-41D3-9A0C-0305E82C3301".
std::string newUUIDString();

}  // namespace orrelin
