// The current time as a Date.
#include "core/date.h"

#include <chrono>

namespace orrelin {

Date Date::now() {
  using namespace std::chrono;
  return Date{duration<double>(system_clock::now().time_since_epoch()).count()};
}

}  // namespace orrelin
