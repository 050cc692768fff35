// Catalog comparison: both sides read once, matched through hash maps of their composed paths.
#include "search/catalog_compare.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <unordered_map>

#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin {

std::string comparisonKey(const std::string& path) {
  // Nearly every path is ASCII, which is its own normal form; skipping ICU for those keeps a comparison of
  // a million records linear in practice as well as on paper.
  bool ascii = true;
  for (unsigned char c : path)
    if (c >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return path;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return path;
  icu::UnicodeString text = icu::UnicodeString::fromUTF8(path);
  if (nfc->isNormalized(text, status) && U_SUCCESS(status)) return path;
  status = U_ZERO_ERROR;
  icu::UnicodeString composed = nfc->normalize(text, status);
  if (U_FAILURE(status)) return path;
  std::string out;
  composed.toUTF8String(out);
  return out;
}

CompareResult CatalogDB::compare(int64_t a, int64_t b) {
  std::vector<FileRecord> sideA = allFiles(a);
  std::vector<FileRecord> sideB = allFiles(b);
  std::erase_if(sideA, [](const FileRecord& f) { return f.isDir; });
  std::erase_if(sideB, [](const FileRecord& f) { return f.isDir; });

  // Keys index into the side's vector; emplace keeps the first record of a repeated path.
  auto index = [](const std::vector<FileRecord>& side, std::vector<std::string>& keys) {
    std::unordered_map<std::string_view, size_t> map;
    keys.reserve(side.size());
    for (const FileRecord& f : side) keys.push_back(comparisonKey(f.path));
    map.reserve(side.size());
    for (size_t i = 0; i < side.size(); ++i) map.emplace(keys[i], i);
    return map;
  };
  std::vector<std::string> keysA, keysB;
  auto mapA = index(sideA, keysA);
  auto mapB = index(sideB, keysB);

  CompareResult result;
  for (size_t i = 0; i < sideA.size(); ++i) {
    const FileRecord& fa = sideA[i];
    auto match = mapB.find(keysA[i]);
    if (match == mapB.end()) {
      result.onlyA.push_back(fa);
      continue;
    }
    const FileRecord& fb = sideB[match->second];
    bool checksumsDiffer = !fa.sha256.empty() && !fb.sha256.empty() && fa.sha256 != fb.sha256;
    if (fa.size != fb.size || checksumsDiffer) {
      result.changed.emplace_back(fa, fb);
    } else {
      ++result.same;
    }
  }
  for (size_t i = 0; i < sideB.size(); ++i)
    if (!mapA.count(keysB[i])) result.onlyB.push_back(sideB[i]);
  return result;
}

std::vector<CompareChip> compareChips(const CompareResult& result) {
  return {{"Only in A", static_cast<int64_t>(result.onlyA.size()), 0},
          {"Only in B", static_cast<int64_t>(result.onlyB.size()), 1},
          {"Different", static_cast<int64_t>(result.changed.size()), 2},
          {"Identical", result.same, -1}};
}

std::vector<SearchHit> compareTabHits(const CompareResult& result, int tab, const std::optional<Catalog>& a,
                                      const std::optional<Catalog>& b) {
  std::string nameA = a ? a->name : "A";
  std::string nameB = b ? b->name : "B";
  std::vector<SearchHit> hits;
  if (tab == 0) {
    for (const FileRecord& f : result.onlyA) hits.push_back({f, nameA});
  } else if (tab == 1) {
    for (const FileRecord& f : result.onlyB) hits.push_back({f, nameB});
  } else if (tab == 2) {
    for (const auto& [fa, fb] : result.changed)
      hits.push_back({fa, nameA + ": " + Fmt::size(fa.size) + " \u00b7 " + nameB + ": " + Fmt::size(fb.size)});
  }
  return hits;
}

std::optional<int64_t> defaultCompareB(const std::vector<Catalog>& catalogs, std::optional<int64_t> a,
                                       std::optional<int64_t> selected) {
  std::optional<int64_t> avoid = a ? a : selected;
  for (const Catalog& c : catalogs)
    if (!avoid || c.id != *avoid) return c.id;
  return std::nullopt;
}

}  // namespace orrelin
