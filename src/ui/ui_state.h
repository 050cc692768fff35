// The look of the interface: the colour theme and the zoom that scales every length and font. Both are
// kept in the user's settings and written through at every change. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include "ui/theme_id.h"

class QJSEngine;
class QQmlEngine;

namespace orrelin {

class UIState : public QObject {
  Q_OBJECT
  // QML reaches the shared instance as the singleton "UIState" (ui/qml_singletons.h).

  // The current theme's index in allThemes().
  Q_PROPERTY(int theme READ themeIndex WRITE setThemeIndex NOTIFY themeChanged)
  Q_PROPERTY(QString themeName READ themeName NOTIFY themeChanged)
  // The current theme's colours.
  Q_PROPERTY(orrelin::Palette p READ palette NOTIFY themeChanged)
  // The interface scale, a multiple of 0.1 from 0.5 to 2.5.
  Q_PROPERTY(double zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
  // "100%", "80%" …
  Q_PROPERTY(QString zoomPercent READ zoomPercent NOTIFY zoomChanged)
  Q_PROPERTY(double minZoom READ minZoom CONSTANT)
  Q_PROPERTY(double maxZoom READ maxZoom CONSTANT)
  // One map per theme, in order: name, blurb, palette.
  Q_PROPERTY(QVariantList themes READ themeList CONSTANT)
  // The zoom menu's levels in percent.
  Q_PROPERTY(QVariantList zoomLevels READ zoomLevelList CONSTANT)
  // One map per screen of the main window, in the sidebar's order: section (the Nav.AppSection value),
  // title, subtitle, symbol.
  Q_PROPERTY(QVariantList sections READ sectionList CONSTANT)
  // One map per pane of the Tools screen, in tab order: tab (the Nav.ToolTab value), title, symbol.
  Q_PROPERTY(QVariantList toolTabs READ toolTabList CONSTANT)

 public:
  static constexpr double kMinZoom = 0.5;
  static constexpr double kMaxZoom = 2.5;
  // The settings keys.
  static constexpr const char* kThemeKey = "theme";
  static constexpr const char* kZoomKey = "zoom";

  // Reads the theme and zoom from the settings: an unknown or missing theme is Obsidian Laser; a stored
  // zoom is held within the bounds, and 0 or a missing value is 1.
  explicit UIState(QObject* parent = nullptr);

  // The program's one instance.
  static UIState& shared();
  // The shared instance for QML's singleton registration; it stays owned by C++.
  static UIState* create(QQmlEngine*, QJSEngine*);

  ThemeID theme() const { return m_theme; }
  void setTheme(ThemeID theme);
  int themeIndex() const { return static_cast<int>(m_theme); }
  void setThemeIndex(int index);
  QString themeName() const { return rawText(m_theme); }
  Palette palette() const { return orrelin::palette(m_theme); }
  // Sets the first theme whose name begins with `prefix`, ignoring case (an empty prefix: the first
  // theme). Returns false, changing nothing, when none does.
  Q_INVOKABLE bool selectTheme(const QString& prefix);

  double zoom() const { return m_zoom; }
  // Holds `value` within the bounds and rounds it to a tenth, halves away from zero; then stores it.
  Q_INVOKABLE void setZoom(double value);
  Q_INVOKABLE void zoomIn() { setZoom(m_zoom + 0.1); }
  Q_INVOKABLE void zoomOut() { setZoom(m_zoom - 0.1); }
  Q_INVOKABLE void resetZoom() { setZoom(1.0); }
  QString zoomPercent() const;
  double minZoom() const { return kMinZoom; }
  double maxZoom() const { return kMaxZoom; }
  // A design length at the current zoom.
  Q_INVOKABLE double s(double value) const { return value * m_zoom; }

  // Applies the launch arguments to the application state and this object, once the main window's
  // content shows: AppModel's own, then "--theme=". Returns true when "--qa-about" asks for the About
  // window.
  Q_INVOKABLE bool applyLaunchArguments(const QStringList& arguments);

 signals:
  void themeChanged();
  void zoomChanged();

 private:
  QVariantList themeList() const;
  QVariantList zoomLevelList() const;
  QVariantList sectionList() const;
  QVariantList toolTabList() const;

  ThemeID m_theme = ThemeID::obsidian;
  double m_zoom = 1.0;
};

}  // namespace orrelin
