// The desktop's services the program calls: showing a file in the file manager, opening a file or a web
// address with its default application, and the clipboard. Main thread only.
#pragma once

#include <QString>
#include <QUrl>
#include <filesystem>

namespace orrelin::DesktopServices {

// Shows `path` selected in the file manager (the org.freedesktop.FileManager1 ShowItems call on the
// session bus), else opens the folder that holds it. Returns false when neither could be started.
bool reveal(const std::filesystem::path& path);

// Opens `path` with its default application. Returns false when that could not be started.
bool open(const std::filesystem::path& path);

// Opens a web address with the default browser. Returns false for text that is not a URL.
bool openUrl(const QString& url);

// Replaces the clipboard's contents with `text`, as plain text. Does nothing in a process without a
// QGuiApplication (the command-line tool).
void copyText(const QString& text);

// The file URL of `path`, carrying its exact bytes (a name that is not UTF-8 keeps them, percent-encoded).
QUrl fileUrl(const std::filesystem::path& path);

// The URL that `text` spells when it is an absolute address with a scheme (and a host, for http and
// https); an invalid QUrl otherwise.
QUrl webAddress(const QString& text);

}  // namespace orrelin::DesktopServices
