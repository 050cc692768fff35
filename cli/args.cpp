#include "cli/args.h"

namespace orrelin::cli {

Args::Args(const std::vector<std::string>& argv, const std::set<std::string>& flags,
           const std::set<std::string>& options) {
  bool optionsEnded = false;
  for (size_t i = 0; i < argv.size(); ++i) {
    const std::string& arg = argv[i];
    if (optionsEnded || arg.size() < 2 || arg[0] != '-' || arg == "-") {
      m_positionals.push_back(arg);
      continue;
    }
    if (arg == "--") {
      optionsEnded = true;
      continue;
    }
    std::string name = arg;
    std::optional<std::string> inlineValue;
    if (auto eq = arg.find('='); eq != std::string::npos && arg.rfind("--", 0) == 0) {
      name = arg.substr(0, eq);
      inlineValue = arg.substr(eq + 1);
    }
    if (flags.count(name)) {
      if (inlineValue) {
        m_error = "option '" + name + "' takes no value";
        return;
      }
      m_flags.insert(name);
    } else if (options.count(name)) {
      if (!inlineValue) {
        if (i + 1 >= argv.size()) {
          m_error = "option '" + name + "' needs a value";
          return;
        }
        inlineValue = argv[++i];
      }
      m_options[name].push_back(*inlineValue);
    } else {
      m_error = "unknown option '" + name + "'";
      return;
    }
  }
}

std::optional<std::string> Args::value(const std::string& name) const {
  auto it = m_options.find(name);
  if (it == m_options.end() || it->second.empty()) return std::nullopt;
  return it->second.back();
}

std::vector<std::string> Args::values(const std::string& name) const {
  auto it = m_options.find(name);
  return it == m_options.end() ? std::vector<std::string>{} : it->second;
}

}  // namespace orrelin::cli
