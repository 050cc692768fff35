// One row of a result list: a cataloged file or folder with the name of its catalog.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "store/records.h"

namespace orrelin {

// A record with its catalog's name: the row type of searches and of every report.
struct SearchHit {
  FileRecord file;
  std::string catalogName;

  bool operator==(const SearchHit&) const = default;

  // The record's fields that result tables sort by.
  int64_t id() const { return file.id; }
  const std::string& name() const { return file.name; }
  const std::string& path() const { return file.path; }
  int64_t size() const { return file.size; }
  std::string_view kindName() const { return file.kindName(); }
  double sortModified() const { return file.sortModified(); }
};

}  // namespace orrelin

template <>
struct std::hash<orrelin::SearchHit> {
  size_t operator()(const orrelin::SearchHit& h) const noexcept {
    return std::hash<orrelin::FileRecord>{}(h.file) * 31 + std::hash<std::string>{}(h.catalogName);
  }
};
