// The JSON catalog export read as a stream of parser events: first checked whole, then taken in one
// catalog at a time, so that no tree of the document is ever built.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "exchange/exporter.h"
#include "exchange/import_source.h"
#include "scan/volume_info.h"

namespace orrelin::Exporter {

// One catalog object of the export, with its keys read and its items made.
struct JSONCatalog {
  std::string name;
  std::string rootPath;
  VolumeInfo volume;
  bool isFolder = false;
  std::string notes;
  std::vector<ImportedFile> items;
};

// What the first reading found out: whether the document has the export's shape, and how many items each
// catalog holds.
struct JSONOutline {
  bool isExport = false;
  size_t list = 0;  // Which "catalogs" key of the root holds the list (the last one), counting from 1.
  std::vector<size_t> itemCounts;  // One per catalog of the list that counts (the last "catalogs").
};

// Reads the whole document from the start of `source` and returns its outline. Throws ExportError when it
// cannot be read or is not JSON, with the texts the importer reports.
JSONOutline outlineJSONExport(ImportSource& source);

// Reads the document again from its start and passes each catalog of `outline`'s list to `each`, in order,
// as soon as its object ends. Throws ExportError when the document no longer matches `outline` (it changed
// on disk meanwhile), and whatever `each` throws.
void readJSONExport(ImportSource& source, const JSONOutline& outline,
                    const std::function<void(JSONCatalog&)>& each);

}  // namespace orrelin::Exporter
