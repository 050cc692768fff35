// The order in which a file manager lists names: ignoring case, by the user's language, and with runs of
// digits compared by their value, so that "file2" comes before "file10".
#pragma once

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class Collator;
U_NAMESPACE_END

namespace orrelin {

class StandardOrder {
 public:
  // A collator for the user's locale (the root order when the locale is C/POSIX, whose collation would
  // sort by code and put every capital before every small letter), numeric, at tertiary strength: case
  // and accents only break ties between texts that are otherwise alike.
  StandardOrder();
  ~StandardOrder();
  StandardOrder(const StandardOrder&) = delete;
  StandardOrder& operator=(const StandardOrder&) = delete;

  // Negative, zero or positive as `a` sorts before, with or after `b`. Zero only for identical texts: a
  // collation tie (a composed and a decomposed accent, say) falls back to the byte order.
  int compare(std::string_view a, std::string_view b) const;

  // A byte string whose plain comparison (memcmp, then length) orders as compare() does, except that
  // collation ties compare equal; for sorting many texts, each key made once.
  std::string sortKey(std::string_view text) const;

  // Sorts `items` by the text `key(item)` gives, in this order; stable for texts that compare equal.
  template <class T, class KeyFn>
  void sort(std::vector<T>& items, KeyFn key) const;

 private:
  std::unique_ptr<icu::Collator> m_collator;
};

// compare() of a fresh StandardOrder; for one comparison. Sorting many texts should use one StandardOrder.
int localizedStandardCompare(std::string_view a, std::string_view b);

}  // namespace orrelin

template <class T, class KeyFn>
void orrelin::StandardOrder::sort(std::vector<T>& items, KeyFn key) const {
  // Keys are made once per item: a collation key is far cheaper to compare than to compute.
  std::vector<std::string> keys;
  keys.reserve(items.size());
  for (const T& item : items) keys.push_back(sortKey(key(item)));
  std::vector<size_t> order(items.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](size_t x, size_t y) {
    int byKey = keys[x].compare(keys[y]);
    if (byKey != 0) return byKey < 0;
    return std::string_view(key(items[x])) < std::string_view(key(items[y]));
  });
  std::vector<T> sorted;
  sorted.reserve(items.size());
  for (size_t i : order) sorted.push_back(std::move(items[i]));
  items = std::move(sorted);
}
