// A small command-line option parser: flags, options with a value (repeatable), and positional arguments.
// "--name=value" and "--name value" are both accepted; "--" ends the options.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orrelin::cli {

class Args {
 public:
  Args(const std::vector<std::string>& argv, const std::set<std::string>& flags,
       const std::set<std::string>& options);

  // Empty when the command line parsed; otherwise what was wrong, ready to print.
  const std::string& error() const { return m_error; }
  bool ok() const { return m_error.empty(); }

  bool flag(const std::string& name) const { return m_flags.count(name) != 0; }
  // The last value given for an option.
  std::optional<std::string> value(const std::string& name) const;
  // Every value given for a repeatable option, in order.
  std::vector<std::string> values(const std::string& name) const;
  const std::vector<std::string>& positionals() const { return m_positionals; }

 private:
  std::set<std::string> m_flags;
  std::map<std::string, std::vector<std::string>> m_options;
  std::vector<std::string> m_positionals;
  std::string m_error;
};

}  // namespace orrelin::cli
