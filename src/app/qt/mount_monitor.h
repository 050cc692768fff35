// Reports mounts, unmounts and volume renames (libmount's monitor of the mount table), on the main
// thread, as one signal.
#pragma once

#include <QObject>
#include <memory>

namespace orrelin {

class MountMonitor : public QObject {
  Q_OBJECT

 public:
  explicit MountMonitor(QObject* parent = nullptr);
  ~MountMonitor() override;

  // False when the monitor could not be set up; then no signal ever comes.
  bool isActive() const;

 signals:
  // The mount table changed (several changes close together may come as one signal).
  void mountsChanged();

 private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace orrelin
