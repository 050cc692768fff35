// The formats of `orrelin-cli export FORMAT ...`. Each format lives in the file of its feature and adds
// its entry through one add…ExportFormats function, called by the export command.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "cli/commands.h"

namespace orrelin::cli {

struct ExportFormat {
  const char* summary;  // One line for the export command's help.
  const char* help;     // The whole text of "export FORMAT --help", starting with "usage: ".
  // Runs with the arguments after the format's name.
  std::function<int(const std::vector<std::string>&, const Context&)> run;
};

using ExportFormatTable = std::map<std::string, ExportFormat>;

// Each registration function adds its formats to the table.
void registerExportFormats(ExportFormatTable& table);

}  // namespace orrelin::cli
