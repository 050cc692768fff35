// The twelve kinds of a cataloged entry, and how an entry is classified into one of them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace orrelin {

// Stored in files.kind by its display name; the declaration order is the order of iteration.
enum class FileKind {
  folder,
  image,
  video,
  audio,
  pdf,
  document,
  archive,
  code,
  application,
  font,
  diskImage,
  other,
};

// Every kind, in declaration order.
inline constexpr std::array<FileKind, 12> kAllFileKinds = {
    FileKind::folder,      FileKind::image,    FileKind::video,     FileKind::audio,
    FileKind::pdf,         FileKind::document, FileKind::archive,   FileKind::code,
    FileKind::application, FileKind::font,     FileKind::diskImage, FileKind::other,
};

// Returns the display name, which is also the stored text ("Folder", "Disk Image", ...).
std::string_view rawValue(FileKind kind);
// Returns the kind whose display name equals `text` exactly (case-sensitive), or nothing.
std::optional<FileKind> fileKindFromRaw(std::string_view text);
// Returns the kind's symbol name ("folder.fill", "photo.fill", ...), which names its icon.
std::string_view symbol(FileKind kind);
// Returns the kind's hue on the colour wheel, from 0 to 1.
double hue(FileKind kind);

// Classifies an entry. `mimeType` is the entry's content type as a shared-mime-info name ("image/jpeg"),
// or nothing when unknown; `ext` is the name's extension in any case without the dot. Never fails.
FileKind classify(const std::optional<std::string>& mimeType, std::string_view ext, bool isDirectory,
                  bool isPackage);

}  // namespace orrelin
