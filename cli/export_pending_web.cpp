// Placeholder until the web export format is built: it registers nothing. Delete this file when its
// real addWebExportFormats is defined next to the format's code.
#include "cli/export_formats.h"

namespace orrelin::cli {

void addWebExportFormats(ExportFormatTable&) {}

}  // namespace orrelin::cli
