// The settings file: reading, and atomic write-through.
#include "core/user_defaults.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <mutex>
#include <system_error>

#include "core/app_paths.h"
#include "store/safe_int.h"

namespace orrelin::UserDefaults {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// Serializes every read-modify-write of this process, so two threads that set different keys both
// land. Another process (the command-line tool next to the desktop program) is not covered: the last
// writer's whole file wins, as a rename cannot merge.
std::mutex& fileMutex() {
  static std::mutex mutex;
  return mutex;
}

// Returns the stored object; anything unreadable is an empty one. Caller holds fileMutex().
json readAll(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return json::object();
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  json parsed = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_object()) return json::object();
  return parsed;
}

// Closes a descriptor when it leaves scope.
class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : m_fd(fd) {}
  ~FileDescriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return m_fd; }
  // Closes now and reports whether the close succeeded; a late write error can surface only here.
  bool close() {
    int fd = m_fd;
    m_fd = -1;
    return ::close(fd) == 0;
  }

 private:
  int m_fd;
};

bool writeAll(int fd, std::string_view text) {
  while (!text.empty()) {
    ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Replaces `file` with `object` so that a reader, or a crash, sees the old file or the new one and never
// a part of either: a temporary in the same folder (rename does not cross filesystems), flushed to disk
// before the rename. Caller holds fileMutex().
bool writeAtomically(const fs::path& file, const json& object) {
  std::error_code ec;
  fs::create_directories(file.parent_path(), ec);
  // Pretty and human-editable; invalid UTF-8 from a file name is replaced rather than thrown on.
  std::string text = object.dump(/*indent=*/2, ' ', /*ensure_ascii=*/false, json::error_handler_t::replace);
  text += '\n';
  std::string temporary = (file.parent_path() / ("." + file.filename().string() + ".XXXXXX")).string();
  FileDescriptor fd(::mkstemp(temporary.data()));
  if (fd.get() < 0) return false;
  bool ok = writeAll(fd.get(), text) && ::fsync(fd.get()) == 0;
  ok = fd.close() && ok;
  if (ok) ok = ::rename(temporary.c_str(), file.c_str()) == 0;
  if (!ok) {
    ::unlink(temporary.c_str());
    return false;
  }
  // Makes the rename itself durable; the file is already complete either way, so a failure is harmless.
  FileDescriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.get() >= 0) ::fsync(folder.get());
  return true;
}

}  // namespace

fs::path filePath() { return AppPaths::configHome() / "TVRL Orrelin" / "defaults.json"; }

std::optional<json> get(std::string_view key) {
  fs::path file = filePath();
  std::lock_guard lock(fileMutex());
  json all = readAll(file);
  auto found = all.find(std::string(key));
  if (found == all.end()) return std::nullopt;
  return *found;
}

bool set(std::string_view key, const json& value) {
  if (value.is_null()) return remove(key);
  fs::path file = filePath();
  std::lock_guard lock(fileMutex());
  json all = readAll(file);
  all[std::string(key)] = value;
  return writeAtomically(file, all);
}

bool remove(std::string_view key) {
  fs::path file = filePath();
  std::lock_guard lock(fileMutex());
  json all = readAll(file);
  if (all.erase(std::string(key)) == 0) return true;
  return writeAtomically(file, all);
}

bool boolean(std::string_view key) {
  auto value = get(key);
  if (!value) return false;
  if (value->is_boolean()) return value->get<bool>();
  if (value->is_number()) return value->get<double>() != 0;
  return false;
}

int64_t integer(std::string_view key) {
  auto value = get(key);
  if (!value) return 0;
  if (value->is_boolean()) return value->get<bool>() ? 1 : 0;
  if (value->is_number_integer() && !value->is_number_unsigned()) return value->get<int64_t>();
  if (value->is_number_unsigned() && value->get<uint64_t>() <= uint64_t{INT64_MAX})
    return static_cast<int64_t>(value->get<uint64_t>());
  // Fractions, and unsigned values past the signed range, follow the rule for floating values.
  if (value->is_number()) return SafeInt::from(value->get<double>());
  return 0;
}

double real(std::string_view key) {
  auto value = get(key);
  if (!value) return 0;
  if (value->is_boolean()) return value->get<bool>() ? 1 : 0;
  if (value->is_number()) return value->get<double>();
  return 0;
}

std::optional<std::string> string(std::string_view key) {
  auto value = get(key);
  if (!value || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

std::optional<json> data(std::string_view key) {
  auto value = get(key);
  if (!value || !(value->is_object() || value->is_array())) return std::nullopt;
  return value;
}

}  // namespace orrelin::UserDefaults
