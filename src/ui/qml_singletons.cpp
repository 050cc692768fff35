// Nothing to define: this file makes the build run moc over qml_singletons.h, which registers the
// shared state objects with QML.
#include "ui/qml_singletons.h"
