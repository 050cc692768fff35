#include "core/uuid_string.h"

#include <uuid/uuid.h>

namespace orrelin {

std::string newUUIDString() {
  uuid_t id;
  uuid_generate_random(id);
  char text[37];
  uuid_unparse_upper(id, text);
  return std::string(text);
}

}  // namespace orrelin
