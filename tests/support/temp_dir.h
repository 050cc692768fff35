// A temporary directory for one test, removed with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <string>

namespace orrelin::testing {

class TempDir {
 public:
  // Creates a fresh, empty directory under the system's temporary folder.
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  // Returns path() / name as text.
  std::string file(const std::string& name) const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};

// The whole contents of the file at `path`; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);

// Writes `contents` to `path`, creating parent folders as needed.
void writeFile(const std::filesystem::path& path, const std::string& contents);

}  // namespace orrelin::testing
