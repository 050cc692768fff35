// A data folder, a settings folder and real trees of their own for each test of the application state,
// dialogs answered from a queue, and waits that spin the main event loop.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "app/qt/app_model.h"
#include "support/qt_wait.h"
#include "app/qt/dialogs.h"
#include "core/test_timing.h"
#include "core/user_defaults.h"
#include "scan/volume_info.h"
#include "store/catalog_db.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace orrelin::testing {

namespace fs = std::filesystem;

class AppModelTest : public ::testing::Test {
 protected:
  AppModelTest() {
    m_env.set("HOME", (m_temp.path() / "home").string());
    m_env.set("XDG_DATA_HOME", (m_temp.path() / "data").string());
    m_env.set("XDG_CONFIG_HOME", (m_temp.path() / "config").string());
    // Scans of the test trees need no media work.
    ScanOptions options;
    options.metadata = options.thumbnails = false;
    ScanOptions::setDefaults(options);
    Dialogs::setAnswerer([this](const Dialogs::Request& request) {
      requests.push_back(request);
      if (answers.empty()) return Dialogs::Answer::cancel();
      Dialogs::Answer answer = answers.front();
      answers.pop_front();
      return answer;
    });
  }
  ~AppModelTest() override {
    model.reset();
    Dialogs::setAnswerer({});
    TestTiming::setTimeScaleForTesting(1);
  }

  // A model on the data folder's database, made afresh.
  AppModel& makeModel() {
    model.reset();
    model = std::make_unique<AppModel>(std::nullopt);
    return *model;
  }

  // A folder of the test's own with the given files (relative paths; contents are the paths).
  fs::path makeTree(const std::string& name, const std::vector<std::string>& files) {
    fs::path root = m_temp.path() / "drives" / name;
    fs::create_directories(root);
    for (const std::string& file : files) writeFile(root / file, file);
    return root;
  }

  // Catalogs `root` through the model, as the New Catalog sheet does, and waits for the end.
  int64_t scan(const fs::path& root, const std::string& name) {
    model->beginScan(root, QString::fromStdString(name), std::nullopt, ScanOptions::defaults());
    EXPECT_TRUE(waitUntil([&] { return !model->scanner()->isRunning(); }));
    for (const Catalog& c : model->catalogs())
      if (c.name == name) return c.id;
    ADD_FAILURE() << "no catalog " << name;
    return 0;
  }

  // Inserts a catalog row directly, for the cases a scan cannot make (samples, imports, other drives).
  int64_t insert(const std::string& name, const std::string& root, const std::string& uuid = "",
                 bool sample = false) {
    VolumeInfo volume;
    volume.name = name + " Volume";
    volume.uuid = uuid;
    int64_t id = model->store()->insertCatalog(name, root, volume, true, std::nullopt, sample);
    model->reload();
    return id;
  }

  Catalog get(int64_t id) {
    auto c = model->catalog(id);
    EXPECT_TRUE(c.has_value()) << id;
    return c.value_or(Catalog{});
  }

  void answer(Dialogs::Answer a) { answers.push_back(a); }

  QString alertTitle() const { return model->alert() ? model->alert()->title : QString(); }
  QString alertMessage() const { return model->alert() ? model->alert()->message : QString(); }
  QString toast() const { return model->toast().value_or(QString()); }

  TempDir m_temp;
  ScopedEnv m_env;
  std::deque<Dialogs::Answer> answers;
  std::vector<Dialogs::Request> requests;
  std::unique_ptr<AppModel> model;
};

}  // namespace orrelin::testing
