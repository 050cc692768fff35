// The program's one general error that carries a text for the user: used by plans, undo, export and import.
#pragma once

#include <stdexcept>
#include <string>

namespace orrelin {

// A failure whose what() is the whole message to show, as it stands.
class ExportError : public std::runtime_error {
 public:
  explicit ExportError(const std::string& message) : std::runtime_error(message) {}
};

}  // namespace orrelin
