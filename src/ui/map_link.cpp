#include "ui/map_link.h"

#include <QStringList>
#include <QUrl>

#include "app/qt/desktop_services.h"

namespace orrelin {

namespace {

// A piece of the value percent-encoded for the query, so that a stray '&' or '#' cannot add keys of its
// own.
QString encoded(const QString& piece) { return QString::fromLatin1(QUrl::toPercentEncoding(piece, "-.")); }

}  // namespace

QString MapLink::address(const QString& gps) const {
  QStringList pieces = gps.split(QLatin1Char(','));
  if (pieces.size() != 2) return {};
  for (QString& piece : pieces) {
    piece = piece.trimmed();
    if (piece.isEmpty()) return {};
  }
  return QString::fromLatin1(kMapAddress) + QStringLiteral("?ll=") + encoded(pieces[0]) + QLatin1Char(',') +
         encoded(pieces[1]) + QStringLiteral("&q=Photo%20Location");
}

bool MapLink::openMap(const QString& gps) const {
  const QString url = address(gps);
  return !url.isEmpty() && DesktopServices::openUrl(url);
}

}  // namespace orrelin
