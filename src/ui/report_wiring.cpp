#include "ui/report_wiring.h"

#include <optional>

#include "app/qt/app_model.h"
#include "search/qt/compare_pane.h"
#include "search/qt/report_panes.h"

namespace orrelin {

namespace {

// Connects `pane` to the shared model; the connections end with the pane. Returns them, so that a
// wiring that moves on to another pane can drop them earlier.
std::vector<QMetaObject::Connection> wire(QObject* pane) {
  AppModel& model = AppModel::shared();
  std::vector<QMetaObject::Connection> out;
  if (auto* empty = qobject_cast<EmptyFoldersPane*>(pane)) {
    empty->setStore(model.store().get());
    out.push_back(QObject::connect(&model, &AppModel::storeChanged, empty, [empty, &model] {
      empty->setStore(model.store().get());
      empty->clearResult();  // Its rows name files of the database that went.
    }));
  } else if (auto* large = qobject_cast<LargeOldPane*>(pane)) {
    large->setStore(model.store().get());
    out.push_back(QObject::connect(&model, &AppModel::storeChanged, large, [large, &model] {
      large->setStore(model.store().get());
      large->clearResult();
    }));
  } else if (auto* missing = qobject_cast<MissingPane*>(pane)) {
    missing->setStore(model.store());
    missing->setOnlineIDs(model.onlineIDs());
    out.push_back(QObject::connect(&model, &AppModel::storeChanged, missing, [missing, &model] {
      missing->setStore(model.store());
      missing->clearResult();
    }));
    out.push_back(QObject::connect(&model, &AppModel::onlineIDsChanged, missing,
                                   [missing, &model] { missing->setOnlineIDs(model.onlineIDs()); }));
    out.push_back(QObject::connect(missing, &MissingPane::driveOffline, &model, [&model](qint64 id) {
      model.show(QStringLiteral("Drive Offline"), model.offlineMessage(id));
    }));
  } else if (auto* compare = qobject_cast<ComparePane*>(pane)) {
    compare->setStore(model.store().get());
    compare->setSelectedCatalog(model.selectedCatalogID());
    out.push_back(QObject::connect(&model, &AppModel::storeChanged, compare, [compare, &model] {
      compare->setStore(model.store().get());
      compare->clearResult();
    }));
    out.push_back(QObject::connect(&model, &AppModel::selectedCatalogIDChanged, compare, [compare, &model] {
      compare->setSelectedCatalog(model.selectedCatalogID());
    }));
    compare->shown();
  }
  return out;
}

}  // namespace

void ReportWiring::setPane(QObject* pane) {
  if (pane == m_pane) return;
  for (const auto& c : m_connections) QObject::disconnect(c);
  m_pane = pane;
  m_connections = wire(pane);
  emit paneChanged();
}

}  // namespace orrelin
