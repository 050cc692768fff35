// Placeholder until the data export format is built: it registers nothing. Delete this file when its
// real addDataExportFormats is defined next to the format's code.
#include "cli/export_formats.h"

namespace orrelin::cli {

void addDataExportFormats(ExportFormatTable&) {}

}  // namespace orrelin::cli
