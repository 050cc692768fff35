// Content types of entries, guessed from their names through GIO's shared-mime-info database.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orrelin {

// The abstract families an entry's content type is tested against when it is classified. A type may
// pass several; the order in which they are asked decides its kind.
enum class ContentCheck {
  application,  // Programs and installable packages (not scripts, which are source code).
  pdf,          // PDF documents.
  image,        // Still images, raster or vector.
  movie,        // Video and other moving pictures.
  audio,        // Sound.
  archive,      // Archives and compressed files (not documents that merely use a zip container).
  font,         // Font files.
  sourceCode,   // Source code, scripts, JSON, XML and the structured-data languages written like them.
  text,         // Text of any kind, presentations, spreadsheets, word-processor documents and RTF.
};

// Returns the freedesktop MIME type GIO guesses for `fileName` from the name alone (no file is opened),
// or nothing when the name tells nothing. Safe from any thread.
std::optional<std::string> contentTypeForName(std::string_view fileName);

// Returns whether `mimeType` belongs to the family `check`, through shared-mime-info's type hierarchy
// and aliases; an unknown or empty type belongs to none. Safe from any thread.
bool conformsTo(std::string_view mimeType, ContentCheck check);

// Returns whether a folder with extension `ext` (any case, no dot) is a package that a Mac shows as a
// single file: "app", "bundle", "pages", "sparsebundle", ...
bool isPackageExtension(std::string_view ext);

}  // namespace orrelin
