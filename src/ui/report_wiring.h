// What the report panes of the Tools screen need from the application and cannot reach from QML: the
// database (again after a restore replaces it), which drives are connected, the "Drive Offline" alert of
// the missing-file check, and the catalog selected in the sidebar for the comparison. A screen declares
// one beside its pane: ReportWiring { pane: thePane }.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <vector>

namespace orrelin {

class ReportWiring : public QObject {
  Q_OBJECT
  QML_ELEMENT
  // An EmptyFoldersPane, LargeOldPane, MissingPane or ComparePane; anything else is left alone.
  Q_PROPERTY(QObject* pane READ pane WRITE setPane NOTIFY paneChanged)

 public:
  explicit ReportWiring(QObject* parent = nullptr) : QObject(parent) {}

  QObject* pane() const { return m_pane; }
  // Gives the pane the current database and keeps it up to date; a comparison pane then fills its
  // empty B, as it does whenever it comes on screen.
  void setPane(QObject* pane);

 signals:
  void paneChanged();

 private:
  QPointer<QObject> m_pane;
  std::vector<QMetaObject::Connection> m_connections;
};

}  // namespace orrelin
