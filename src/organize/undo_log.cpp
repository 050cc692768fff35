#include "organize/undo_log.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "core/app_paths.h"
#include "store/fmt.h"

namespace orrelin {

using nlohmann::json;

json UndoLog::toJSON() const {
  json folders = createdFolders;
  json list = json::array();
  for (const PlanMove& m : moves) list.push_back({{"from", m.from}, {"to", m.to}});
  return {{"id", id},           {"created", Fmt::iso(created)}, {"title", title},   {"root", root},
          {"createdFolders", folders}, {"moves", list},        {"undone", undone}};
}

std::optional<UndoLog> UndoLog::fromJSON(const json& value) {
  if (!value.is_object()) return std::nullopt;
  auto text = [&](const char* key) -> const json* {
    auto it = value.find(key);
    return it != value.end() && it->is_string() ? &*it : nullptr;
  };
  const json *id = text("id"), *created = text("created"), *title = text("title"), *root = text("root");
  auto folders = value.find("createdFolders");
  auto moves = value.find("moves");
  auto undone = value.find("undone");
  if (!id || !created || !title || !root || folders == value.end() || !folders->is_array() ||
      moves == value.end() || !moves->is_array() || undone == value.end() || !undone->is_boolean())
    return std::nullopt;
  UndoLog log;
  OptionalDate date = Fmt::parseIso(created->get<std::string>());
  if (!date) return std::nullopt;
  log.id = id->get<std::string>();
  log.created = *date;
  log.title = title->get<std::string>();
  log.root = root->get<std::string>();
  for (const json& f : *folders) {
    if (!f.is_string()) return std::nullopt;
    log.createdFolders.push_back(f.get<std::string>());
  }
  for (const json& m : *moves) {
    if (!m.is_object()) return std::nullopt;
    auto from = m.find("from"), to = m.find("to");
    if (from == m.end() || to == m.end() || !from->is_string() || !to->is_string()) return std::nullopt;
    log.moves.push_back({from->get<std::string>(), to->get<std::string>()});
  }
  log.undone = undone->get<bool>();
  return log;
}

namespace UndoLogStore {

std::filesystem::path folder() { return AppPaths::undoLogs(); }

void save(const UndoLog& log) {
  // The id names the file, so it must be one plain name: a log with any other id is not kept.
  if (log.id.empty() || log.id.find('/') != std::string::npos || log.id == "." || log.id == "..") return;
  std::string text;
  try {
    text = log.toJSON().dump(2) + "\n";
  } catch (const json::exception&) {
    return;  // Text that is not UTF-8 cannot be written as JSON.
  }
  std::filesystem::path dir = folder();
  std::string tmp = (dir / ("." + log.id + ".json.XXXXXX")).string();
  int fd = ::mkstemp(tmp.data());
  if (fd < 0) return;
  bool ok = true;
  for (size_t done = 0; ok && done < text.size();) {
    ssize_t n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    ok = n > 0;
    if (ok) done += static_cast<size_t>(n);
  }
  ok = ok && ::fchmod(fd, 0644) == 0 && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  if (!ok || ::rename(tmp.c_str(), (dir / (log.id + ".json")).c_str()) != 0) ::unlink(tmp.c_str());
}

std::vector<UndoLog> list() {
  std::vector<UndoLog> logs;
  std::error_code ec;
  std::filesystem::directory_iterator it(folder(), ec);
  for (; !ec && it != std::filesystem::directory_iterator(); it.increment(ec)) {
    std::string text;
    try {
      std::ifstream in(it->path(), std::ios::binary);
      if (!in) continue;
      text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    } catch (const std::exception&) {
      continue;  // A folder, or a file that fails while it is read.
    }
    json value = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded()) continue;
    if (auto log = UndoLog::fromJSON(value)) logs.push_back(std::move(*log));
  }
  std::stable_sort(logs.begin(), logs.end(), [](const UndoLog& a, const UndoLog& b) {
    return a.created != b.created ? a.created > b.created : a.id < b.id;
  });
  return logs;
}

}  // namespace UndoLogStore

}  // namespace orrelin
