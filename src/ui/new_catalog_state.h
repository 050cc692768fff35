// What the New Catalog sheet holds while it is up: the volumes on offer, what will be scanned, the new
// catalog's name and group, and the options of the scan. A sheet makes one of these when it appears, so
// every sheet starts fresh; only the options carry over, through the stored scan defaults.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "scan/scan_records.h"
#include "scan/volume_info.h"

namespace orrelin {

class NewCatalogState : public QObject {
  Q_OBJECT
  QML_ELEMENT

  // One map per mounted volume, in the order the system lists them: url, name (may be empty), symbol
  // ("network", "externaldrive.fill" or "internaldrive.fill"), capacity, free (bytes; 0 when unknown).
  Q_PROPERTY(QVariantList volumes READ volumeList CONSTANT)
  // The path that will be scanned, as shown; empty while nothing is chosen.
  Q_PROPERTY(QString chosen READ chosenText NOTIFY chosenChanged)
  Q_PROPERTY(bool canStart READ canStart NOTIFY chosenChanged)
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
  // The new catalog's group, or -1 for none.
  Q_PROPERTY(qint64 groupID READ groupIDValue WRITE setGroupIDValue NOTIFY groupIDChanged)
  // The group picker's entries: "Ungrouped" (id -1) first, then the groups in their order; each a map of
  // id and name. `groupIndex` is the entry of groupID.
  Q_PROPERTY(QVariantList groupChoices READ groupChoices CONSTANT)
  Q_PROPERTY(int groupIndex READ groupIndex WRITE setGroupIndex NOTIFY groupIDChanged)
  Q_PROPERTY(bool metadata READ metadata WRITE setMetadata NOTIFY optionsChanged)
  Q_PROPERTY(bool thumbnails READ thumbnails WRITE setThumbnails NOTIFY optionsChanged)
  Q_PROPERTY(bool hashes READ hashes WRITE setHashes NOTIFY optionsChanged)
  Q_PROPERTY(bool includeHidden READ includeHidden WRITE setIncludeHidden NOTIFY optionsChanged)
  Q_PROPERTY(
      bool treatPackagesAsFiles READ treatPackagesAsFiles WRITE setTreatPackagesAsFiles NOTIFY optionsChanged)

 public:
  // Reads the mounted volumes, the group of the selected catalog and the stored scan defaults.
  explicit NewCatalogState(QObject* parent = nullptr);

  QVariantList volumeList() const;
  const std::vector<MountedVolume>& volumes() const { return m_volumes; }
  const std::optional<std::filesystem::path>& chosen() const { return m_chosen; }
  QString chosenText() const;
  bool canStart() const { return m_chosen.has_value(); }
  QString name() const { return m_name; }
  void setName(const QString& name);
  std::optional<int64_t> groupID() const { return m_groupID; }
  qint64 groupIDValue() const { return m_groupID.value_or(-1); }
  void setGroupIDValue(qint64 id);
  QVariantList groupChoices() const;
  int groupIndex() const;
  void setGroupIndex(int index);
  const ScanOptions& options() const { return m_options; }
  bool metadata() const { return m_options.metadata; }
  void setMetadata(bool on) { setOption(&ScanOptions::metadata, on); }
  bool thumbnails() const { return m_options.thumbnails; }
  void setThumbnails(bool on) { setOption(&ScanOptions::thumbnails, on); }
  bool hashes() const { return m_options.hashes; }
  void setHashes(bool on) { setOption(&ScanOptions::hashes, on); }
  bool includeHidden() const { return m_options.includeHidden; }
  void setIncludeHidden(bool on) { setOption(&ScanOptions::includeHidden, on); }
  bool treatPackagesAsFiles() const { return m_options.treatPackagesAsFiles; }
  void setTreatPackagesAsFiles(bool on) { setOption(&ScanOptions::treatPackagesAsFiles, on); }

  // Chooses volume `index` of `volumes`; the name becomes the volume's, or its mount point's last
  // component when it has none, replacing whatever was typed. Out-of-range indexes do nothing.
  Q_INVOKABLE void chooseVolume(int index);
  // Asks for a folder with the folder chooser; a confirmed choice becomes `chosen`, and its last
  // component the name.
  Q_INVOKABLE void chooseFolder();
  // Chooses `path` as the folder chooser would.
  void choose(const std::filesystem::path& path);
  // Starts the scan when something is chosen: stores the options as the scan defaults, names the catalog
  // (the trimmed name, else the chosen item's last component), starts the scan and closes the sheet.
  // Returns false, doing nothing, while nothing is chosen or once it has started.
  Q_INVOKABLE bool start();
  // Closes the sheet.
  Q_INVOKABLE void cancel();

  // The name a catalog of `path` takes when none is typed: its last component ("/" for the root).
  static QString lastComponent(const std::filesystem::path& path);
  // The icon of a volume's card: "network" for a network volume, else "externaldrive.fill" for a removable
  // one, else "internaldrive.fill".
  static QString volumeSymbol(const VolumeInfo& info);

 signals:
  void chosenChanged();
  void nameChanged();
  void groupIDChanged();
  void optionsChanged();

 private:
  void setOption(bool ScanOptions::*field, bool on);
  void setChosen(const std::filesystem::path& path, const QString& name);

  std::vector<MountedVolume> m_volumes;
  std::optional<std::filesystem::path> m_chosen;  // The real path on disk.
  QString m_name;
  std::optional<int64_t> m_groupID;
  std::vector<std::pair<int64_t, QString>> m_groups;  // The groups on offer, read once with the rest.
  ScanOptions m_options;
  bool m_started = false;  // start() has run; the sheet is on its way out.
};

}  // namespace orrelin
