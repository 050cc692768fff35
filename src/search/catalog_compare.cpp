// Catalog comparison: both sides read once, matched through hash maps of their composed paths.
#include "search/catalog_compare.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <unordered_map>

#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin {

namespace {

bool isAscii(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

const icu::Normalizer2* nfc() {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
  return U_SUCCESS(status) ? normalizer : nullptr;
}

// True when `path` is its own comparison key. Nearly every path is ASCII, which is composed already, so
// ICU is asked only about the few others.
bool isOwnKey(const std::string& path) {
  if (isAscii(path)) return true;
  const icu::Normalizer2* normalizer = nfc();
  if (!normalizer) return true;
  UErrorCode status = U_ZERO_ERROR;
  bool composed = normalizer->isNormalized(icu::UnicodeString::fromUTF8(path), status);
  return U_FAILURE(status) || composed;
}

}  // namespace

std::string comparisonKey(const std::string& path) {
  if (isOwnKey(path)) return path;
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString composed = nfc()->normalize(icu::UnicodeString::fromUTF8(path), status);
  if (U_FAILURE(status)) return path;
  std::string out;
  composed.toUTF8String(out);
  return out;
}

namespace {

// Files the pair under `changed` or counts it as identical: only the size, and the checksums where both
// sides have one, decide.
void judge(FileRecord&& fa, const FileRecord& fb, CompareResult& result) {
  bool checksumsDiffer = !fa.sha256.empty() && !fb.sha256.empty() && fa.sha256 != fb.sha256;
  if (fa.size != fb.size || checksumsDiffer) {
    result.changed.emplace_back(std::move(fa), fb);
  } else {
    ++result.same;
  }
}

// True when every path of `side` is its own comparison key, as ASCII and already-composed paths are.
bool pathsAreKeys(const std::vector<FileRecord>& side) {
  return std::all_of(side.begin(), side.end(), [](const FileRecord& f) { return isOwnKey(f.path); });
}

// Both sides come sorted by path in binary order, which for paths that are their own keys is key order,
// and a path occurs once per catalog: one walk down both lists matches them, with no hashing at all.
void mergeSorted(std::vector<FileRecord>& sideA, std::vector<FileRecord>& sideB, CompareResult& result) {
  size_t i = 0, j = 0;
  while (i < sideA.size() || j < sideB.size()) {
    int order = i == sideA.size() ? 1 : j == sideB.size() ? -1 : sideA[i].path.compare(sideB[j].path);
    if (order < 0) {
      result.onlyA.push_back(std::move(sideA[i++]));
    } else if (order > 0) {
      result.onlyB.push_back(std::move(sideB[j++]));
    } else {
      judge(std::move(sideA[i++]), sideB[j++], result);
    }
  }
}

// The general case: maps from composed path to record, the first record of a repeated key standing.
void matchByKeys(std::vector<FileRecord>& sideA, std::vector<FileRecord>& sideB, CompareResult& result) {
  auto keys = [](const std::vector<FileRecord>& side) {
    std::vector<std::string> out;
    out.reserve(side.size());
    for (const FileRecord& f : side) out.push_back(comparisonKey(f.path));
    return out;
  };
  auto index = [](const std::vector<std::string>& sideKeys) {
    std::unordered_map<std::string_view, size_t> map;
    map.reserve(sideKeys.size());
    for (size_t i = 0; i < sideKeys.size(); ++i) map.emplace(sideKeys[i], i);
    return map;
  };
  std::vector<std::string> keysA = keys(sideA), keysB = keys(sideB);
  auto mapA = index(keysA);
  auto mapB = index(keysB);
  for (size_t i = 0; i < sideA.size(); ++i) {
    auto match = mapB.find(keysA[i]);
    if (match == mapB.end()) {
      result.onlyA.push_back(std::move(sideA[i]));
    } else {
      // The B record is copied: two A paths of one key may both meet it.
      judge(std::move(sideA[i]), sideB[match->second], result);
    }
  }
  for (size_t i = 0; i < sideB.size(); ++i)
    if (!mapA.count(keysB[i])) result.onlyB.push_back(std::move(sideB[i]));
}

}  // namespace

CompareResult CatalogDB::compare(int64_t a, int64_t b) {
  std::vector<FileRecord> sideA = allFiles(a);
  std::vector<FileRecord> sideB = allFiles(b);
  std::erase_if(sideA, [](const FileRecord& f) { return f.isDir; });
  std::erase_if(sideB, [](const FileRecord& f) { return f.isDir; });
  CompareResult result;
  if (pathsAreKeys(sideA) && pathsAreKeys(sideB)) {
    mergeSorted(sideA, sideB, result);
  } else {
    matchByKeys(sideA, sideB, result);
  }
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
      hits.push_back(
          {fa, nameA + ": " + Fmt::size(fa.size) + " \u00b7 " + nameB + ": " + Fmt::size(fb.size)});
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
