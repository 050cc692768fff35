// The six colour themes: their names, their one-line descriptions and their twelve colours.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace orrelin {

// The themes, in the order they are offered.
enum class ThemeID { obsidian, aurora, solar, ocean, steel, synth };

// The twelve colours of a theme, as QML reads them (UIState.p.accent …).
struct Palette {
  Q_GADGET
  QML_ANONYMOUS
  Q_PROPERTY(QColor bgTop MEMBER bgTop CONSTANT)
  Q_PROPERTY(QColor bgBottom MEMBER bgBottom CONSTANT)
  Q_PROPERTY(QColor panel MEMBER panel CONSTANT)
  Q_PROPERTY(QColor stroke MEMBER stroke CONSTANT)
  Q_PROPERTY(QColor text MEMBER text CONSTANT)
  Q_PROPERTY(QColor subtext MEMBER subtext CONSTANT)
  Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
  Q_PROPERTY(QColor accent2 MEMBER accent2 CONSTANT)
  Q_PROPERTY(QColor glow MEMBER glow CONSTANT)
  Q_PROPERTY(QColor ok MEMBER ok CONSTANT)
  Q_PROPERTY(QColor warn MEMBER warn CONSTANT)
  Q_PROPERTY(QColor danger MEMBER danger CONSTANT)

 public:
  QColor bgTop, bgBottom, panel, stroke, text, subtext, accent, accent2, glow, ok, warn, danger;

  bool operator==(const Palette&) const = default;
};

// Every theme, in order.
const std::vector<ThemeID>& allThemes();
// The shown name ("Obsidian Laser", …), which is also what settings and launch arguments store.
QString rawText(ThemeID theme);
// The line that describes the theme in Settings.
QString blurb(ThemeID theme);
// The theme's colours.
Palette palette(ThemeID theme);
// The raw texts of allThemes(), in order.
QStringList themeRawTexts();

}  // namespace orrelin

Q_DECLARE_METATYPE(orrelin::Palette)
