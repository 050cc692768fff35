// The desktop's services: the file manager over the session bus, default applications through Qt, and the
// clipboard.
#include "app/qt/desktop_services.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QStringList>
#include <QUrl>

namespace orrelin::DesktopServices {

namespace {

// A file manager that is already running answers at once; one being started by the bus may take longer,
// and the interface must not freeze waiting for it.
constexpr int kShowItemsTimeoutMs = 2000;

// Asks the desktop's file manager to show `url` selected. True when the call was delivered.
bool showItems(const QUrl& url) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  call << QStringList{QString::fromLatin1(url.toEncoded())} << QString();
  const QDBusMessage reply = bus.call(call, QDBus::Block, kShowItemsTimeoutMs);
  if (reply.type() == QDBusMessage::ReplyMessage) return true;
  // No answer in time: the file manager was found and is starting. Opening the folder as well would show
  // it twice.
  const QDBusError::ErrorType error = QDBusError(reply).type();
  return error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut;
}

// `path` without a trailing separator (except for "/" itself), so that its parent is the folder holding it.
std::filesystem::path withoutTrailingSlash(const std::filesystem::path& path) {
  std::string text = path.native();
  while (text.size() > 1 && text.ends_with('/')) text.pop_back();
  return text;
}

}  // namespace

QUrl fileUrl(const std::filesystem::path& path) {
  // Percent-encoding the bytes themselves keeps a name that is not UTF-8 exactly as it is on disk.
  const std::filesystem::path full = path.is_absolute() ? path : std::filesystem::absolute(path);
  const QByteArray bytes(full.native().data(), static_cast<qsizetype>(full.native().size()));
  return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"), QUrl::StrictMode);
}

QUrl webAddress(const QString& text) {
  const QUrl url(text.trimmed(), QUrl::StrictMode);
  // One letter is a Windows drive ("C:\\x"), not a scheme.
  if (!url.isValid() || url.isRelative() || url.scheme().size() < 2) return {};
  const QString scheme = url.scheme().toLower();
  if ((scheme == QLatin1String("http") || scheme == QLatin1String("https")) && url.host().isEmpty())
    return {};
  return url;
}

bool reveal(const std::filesystem::path& path) {
  const std::filesystem::path item = withoutTrailingSlash(path);
  if (showItems(fileUrl(item))) return true;
  const std::filesystem::path folder = item.has_relative_path() ? item.parent_path() : item;
  return QDesktopServices::openUrl(fileUrl(folder));
}

bool open(const std::filesystem::path& path) { return QDesktopServices::openUrl(fileUrl(path)); }

bool openUrl(const QString& url) {
  const QUrl address = webAddress(url);
  return address.isValid() && QDesktopServices::openUrl(address);
}

void copyText(const QString& text) {
  // The clipboard belongs to the windowing system, which only a QGuiApplication connects to.
  if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) return;
  QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

}  // namespace orrelin::DesktopServices
