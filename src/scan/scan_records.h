// What a scan collects, what it reports while it runs, what it ends with, and the flags that pause or
// cancel it from another thread.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace orrelin {

// What a scan collects. Stored as the user's preferred options under the settings key "scanDefaults";
// the options of one scan are not kept with its catalog.
struct ScanOptions {
  bool includeHidden = false;        // Walk hidden files and folders too.
  bool metadata = true;              // Read media metadata.
  bool thumbnails = true;            // Write thumbnails.
  bool hashes = false;               // Compute the SHA-256 of every file.
  bool treatPackagesAsFiles = true;  // A package is one file of its summed size; its contents are not walked.

  bool operator==(const ScanOptions&) const = default;

  // The settings key of the user's preferred options.
  static constexpr const char* kDefaultsKey = "scanDefaults";

  // The JSON object with exactly the five keys above, all booleans.
  nlohmann::json toJSON() const;
  // Decodes an object that has all five keys as booleans (other keys are ignored); nothing otherwise.
  static std::optional<ScanOptions> fromJSON(const nlohmann::json& json);

  // The user's preferred options; the field defaults when none are stored or they do not decode.
  static ScanOptions defaults();
  // Stores `options` as the user's preferred options. Returns false when the settings could not be written.
  static bool setDefaults(const ScanOptions& options);
};

// The phases a scan reports, in order.
namespace ScanPhase {
inline constexpr const char* scanning = "Scanning";
inline constexpr const char* reconciling = "Reconciling";
inline constexpr const char* totalling = "Totalling";
inline constexpr const char* done = "Done";
}  // namespace ScanPhase

// One progress report of a running scan.
struct ScanProgress {
  std::string phase;        // One of ScanPhase.
  int64_t items = 0;        // Entries processed.
  int64_t bytes = 0;        // Sum of the sizes of the non-folder entries processed.
  std::string currentPath;  // Relative path of the latest entry (the root before the first); empty after the walk.
  int64_t added = 0;        // New rows so far.
  int64_t changed = 0;      // Rewritten rows so far.
  int64_t removed = 0;      // Deleted rows so far.
  int64_t catalogID = 0;    // The catalog being scanned.

  bool operator==(const ScanProgress&) const = default;
};

// The outcome of one scan.
struct ScanResult {
  // Most paths kept in each of the added, changed and removed lists; the counts go on beyond it.
  static constexpr size_t kListLimit = 500;

  std::string id;                    // A fresh UUID for every scan.
  int64_t catalogID = 0;             // 0 when a new catalog was never created.
  std::string catalogName;           // Read back at the end; the requested name when the scan failed.
  std::vector<std::string> added;    // Relative paths of new entries, the first kListLimit.
  std::vector<std::string> changed;  // Relative paths of rewritten entries, the first kListLimit.
  std::vector<std::string> removed;  // Relative paths of deleted entries, the first kListLimit by path.
  int64_t addedCount = 0;
  int64_t changedCount = 0;
  int64_t removedCount = 0;
  double seconds = 0;  // Duration; stays 0 when the scan failed before its end.
  bool cancelled = false;
  bool isRescan = false;
  std::optional<std::string> error;  // Set when the scan failed: the message for the user.

  bool operator==(const ScanResult&) const = default;

  // Returns a new random UUID in its usual upper-case text form.
  static std::string newID();
};

// Pause and cancel flags shared by whoever runs a scan (writes) and the scan itself (polls at every entry).
// Nothing waits on them; each read and each write takes the lock alone.
class ScanControl {
 public:
  bool paused() const {
    std::lock_guard guard(m_lock);
    return m_paused;
  }
  void setPaused(bool paused) {
    std::lock_guard guard(m_lock);
    m_paused = paused;
  }
  bool cancelled() const {
    std::lock_guard guard(m_lock);
    return m_cancelled;
  }
  void setCancelled(bool cancelled) {
    std::lock_guard guard(m_lock);
    m_cancelled = cancelled;
  }

 private:
  mutable std::mutex m_lock;
  bool m_paused = false;     // Under m_lock.
  bool m_cancelled = false;  // Under m_lock.
};

}  // namespace orrelin
