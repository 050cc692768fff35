// The screens' display texts, from the store's formatters.
#include "ui/fmt_text.h"

#include <cmath>
#include <cstdint>

#include "store/fmt.h"

namespace orrelin {

namespace {

// QML numbers are doubles; anything beyond what an int64 holds is clamped rather than overflowed.
int64_t wholeNumber(double value) {
  if (!std::isfinite(value)) return 0;
  if (value >= 9.2e18) return INT64_MAX;
  if (value <= -9.2e18) return INT64_MIN;
  return static_cast<int64_t>(value);
}

QString qstring(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

QString FmtText::size(double bytes) const { return qstring(Fmt::size(wholeNumber(bytes))); }

QString FmtText::count(double value) const { return qstring(Fmt::count(wholeNumber(value))); }

QString FmtText::date(double seconds) const {
  if (!std::isfinite(seconds) || seconds < 0) return qstring(std::string(Fmt::kNone));
  return qstring(Fmt::date(Date::fromSeconds(seconds)));
}

QString FmtText::duration(double seconds) const { return qstring(Fmt::duration(seconds)); }

}  // namespace orrelin
