// Preparing a QML engine for the program's screens: the image providers they use. The desktop program
// and the interface tests load the same screens through this.
#pragma once

#include <QUrl>

class QQmlEngine;

namespace orrelin {

// Installs the "icon" image provider (and the others the screens need) on `engine`.
void setUpQmlEngine(QQmlEngine& engine);

// The main window's QML file.
QUrl mainWindowUrl();

}  // namespace orrelin
