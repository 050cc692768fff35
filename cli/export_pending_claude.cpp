// Placeholder until the claude export format is built: it registers nothing. Delete this file when its
// real addClaudeExportFormats is defined next to the format's code.
#include "cli/export_formats.h"

namespace orrelin::cli {

void addClaudeExportFormats(ExportFormatTable&) {}

}  // namespace orrelin::cli
