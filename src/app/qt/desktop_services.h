// The desktop's services the program calls: showing a file in the file manager, opening a file or a web
// address with its default application, and the clipboard. Main thread only.
#pragma once

#include <QString>
#include <filesystem>

namespace orrelin::DesktopServices {

// Shows `path` selected in the file manager (the org.freedesktop.FileManager1 ShowItems call on the
// session bus), else opens the folder that holds it. Returns false when neither could be started.
bool reveal(const std::filesystem::path& path);

// Opens `path` with its default application. Returns false when that could not be started.
bool open(const std::filesystem::path& path);

// Opens a web address with the default browser. Returns false for text that is not a URL.
bool openUrl(const QString& url);

// Replaces the clipboard's contents with `text`, as plain text.
void copyText(const QString& text);

}  // namespace orrelin::DesktopServices
