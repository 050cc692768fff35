// Temporary folders for tests.
#include "support/temp_dir.h"

#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace orrelin::testing {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "orrelin-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  m_path = pattern;
}

TempDir::~TempDir() {
  std::error_code ec;
  // Tests may leave read-only folders behind; make them writable so the removal can finish.
  for (auto it = std::filesystem::recursive_directory_iterator(
           m_path, std::filesystem::directory_options::skip_permission_denied, ec);
       !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
    if (it->is_directory(ec) && !it->is_symlink(ec))
      std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                   std::filesystem::perm_options::add, ec);
  }
  std::filesystem::remove_all(m_path, ec);
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

void writeFile(const std::filesystem::path& path, const std::string& contents) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << contents;
  if (!out) throw std::runtime_error("could not write " + path.string());
}

}  // namespace orrelin::testing
