// The theme and zoom, kept in the user's settings.
#include "ui/ui_state.h"

#include <QQmlEngine>
#include <QVariantMap>

#include <algorithm>
#include <cmath>

#include "app/qt/app_model.h"
#include "app/qt/launch_arguments.h"
#include "app/qt/navigation.h"
#include "core/user_defaults.h"

namespace orrelin {

namespace {

double heldZoom(double value) {
  if (!std::isfinite(value)) return 1.0;
  return std::clamp(value, UIState::kMinZoom, UIState::kMaxZoom);
}

}  // namespace

UIState::UIState(QObject* parent) : QObject(parent) {
  if (auto stored = UserDefaults::string(kThemeKey)) {
    const QStringList names = themeRawTexts();
    const int index = static_cast<int>(names.indexOf(QString::fromStdString(*stored)));
    if (index >= 0) m_theme = allThemes()[static_cast<size_t>(index)];
  }
  const double stored = UserDefaults::real(kZoomKey);
  m_zoom = stored == 0.0 ? 1.0 : heldZoom(stored);
}

UIState& UIState::shared() {
  static UIState* instance = new UIState(nullptr);  // Lives as long as the process, like the settings it mirrors.
  return *instance;
}

UIState* UIState::create(QQmlEngine*, QJSEngine*) {
  UIState* state = &shared();
  QJSEngine::setObjectOwnership(state, QJSEngine::CppOwnership);
  return state;
}

void UIState::setTheme(ThemeID theme) {
  if (theme == m_theme) return;
  m_theme = theme;
  UserDefaults::set(kThemeKey, rawText(theme).toStdString());
  emit themeChanged();
}

void UIState::setThemeIndex(int index) {
  if (index < 0 || index >= static_cast<int>(allThemes().size())) return;
  setTheme(allThemes()[static_cast<size_t>(index)]);
}

bool UIState::selectTheme(const QString& prefix) {
  const auto match = LaunchArguments::match(prefix, themeRawTexts());
  if (!match) return false;
  setThemeIndex(*match);
  return true;
}

void UIState::setZoom(double value) {
  // Tenths only: 0.75 from the menu becomes 0.8, as the zoom control's steps are tenths too.
  const double zoom = std::round(heldZoom(value) * 10.0) / 10.0;
  UserDefaults::set(kZoomKey, zoom);
  if (zoom == m_zoom) return;
  m_zoom = zoom;
  emit zoomChanged();
}

QString UIState::zoomPercent() const {
  return QString::number(static_cast<long long>(std::round(m_zoom * 100.0))) + QLatin1Char('%');
}

bool UIState::applyLaunchArguments(const QStringList& arguments) {
  const LaunchRequests requests = AppModel::shared().applyLaunchArguments(arguments);
  if (requests.theme) selectTheme(*requests.theme);
  return requests.openAbout;
}

QVariantList UIState::themeList() const {
  QVariantList list;
  for (ThemeID theme : allThemes()) {
    list.append(QVariantMap{{"name", rawText(theme)},
                            {"blurb", blurb(theme)},
                            {"palette", QVariant::fromValue(orrelin::palette(theme))}});
  }
  return list;
}

QVariantList UIState::zoomLevelList() const { return {50, 75, 100, 125, 150, 175, 200, 250}; }

QVariantList UIState::sectionList() const {
  QVariantList list;
  for (AppSection section : allSections()) {
    list.append(QVariantMap{{"section", static_cast<int>(section)},
                            {"title", rawText(section)},
                            {"subtitle", subtitle(section)},
                            {"symbol", symbol(section)}});
  }
  return list;
}

QVariantList UIState::toolTabList() const {
  QVariantList list;
  for (ToolTab tab : allToolTabs()) {
    list.append(QVariantMap{{"tab", static_cast<int>(tab)}, {"title", rawText(tab)}, {"symbol", symbol(tab)}});
  }
  return list;
}

}  // namespace orrelin
