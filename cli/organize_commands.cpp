// The organization commands of orrelin-cli: dry runs and application of organization plans, and the undo
// logs of applied plans and batch renames.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include <nlohmann/json.hpp>

#include "cli/args.h"
#include "cli/command_table.h"
#include "core/name_mapping.h"
#include "organize/plan_engine.h"
#include "store/catalog_db.h"
#include "store/fmt.h"

namespace orrelin::cli {

namespace {

std::string plural(size_t n, const char* word) {
  return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
}

// Why a catalog's folder cannot be worked on, or empty when it is there.
std::string offlineReason(const Catalog& c) {
  if (c.isSample)
    return "\u201C" + c.name + "\u201D is demonstration data, so there is no real drive to apply a plan to.";
  if (c.rootPath.empty()) return "\u201C" + c.name + "\u201D was imported from a file, so its original location is unknown.";
  struct stat st;
  if (::stat(NameMapping::toDisk(c.rootPath).c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return {};
  return "Drive offline \u2014 insert \u201C" + c.displayVolume() + "\u201D (" + c.rootPath +
         ") to use this plan. Plans are validated and applied against the real files.";
}

// Asks a yes/no question on the terminal; true only for an answer that starts with y.
bool confirm(const std::string& question) {
  std::fprintf(stderr, "%s [y/N] ", question.c_str());
  std::fflush(stderr);
  std::string answer;
  if (!std::getline(std::cin, answer)) return false;
  return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

nlohmann::json stepsJSON(const std::vector<PlanStep>& steps) {
  nlohmann::json out = nlohmann::json::array();
  for (const PlanStep& s : steps)
    out.push_back({{"kind", rawValue(s.kind)}, {"from", s.from}, {"to", s.to}, {"ok", s.ok}, {"status", s.status}});
  return out;
}

size_t okCount(const std::vector<PlanStep>& steps) {
  size_t n = 0;
  for (const PlanStep& s : steps) n += s.ok;
  return n;
}

void printSteps(const std::vector<PlanStep>& steps) {
  if (steps.empty()) {
    std::puts("The plan has no steps.");
    return;
  }
  std::printf("    %-10s  %-36s  %-36s  %s\n", "STEP", "FROM", "TO", "STATUS");
  for (const PlanStep& s : steps)
    std::printf("%s  %-10s  %-36s  %-36s  %s\n", s.ok ? "ok" : "--", std::string(rawValue(s.kind)).c_str(),
                s.from.c_str(), s.to.c_str(), s.status.c_str());
  size_t ok = okCount(steps);
  std::printf("\nDry run: %s ready, %zu blocked\n", plural(steps.size(), "step").c_str(), steps.size() - ok);
}

// The work common to check and apply: the command line, the plan, the catalog and the dry run.
struct Prepared {
  OrganizationPlan plan;
  Catalog catalog;
  std::string planFile;
  std::vector<PlanStep> steps;
};

int prepare(const char* command, const Args& args, const Context& context, Prepared& out) {
  if (!args.ok()) return usageError(command, args.error());
  if (args.positionals().size() != 1)
    return usageError(command, args.positionals().empty() ? "which plan? Give the path of a plan file"
                                                          : "takes one plan file (got " +
                                                                std::to_string(args.positionals().size()) + ")");
  auto catalogName = args.value("--catalog");
  if (!catalogName) return usageError(command, "which cartridge? Give --catalog ID-OR-NAME");
  out.planFile = args.positionals().front();
  try {
    out.plan = PlanEngine::load(out.planFile);
  } catch (const std::exception& e) {
    return failure(std::string("Plan Not Loaded: ") + e.what());
  }
  CatalogDB store(databasePath(context));
  std::string error;
  auto catalog = findCatalog(store, *catalogName, error);
  if (!catalog) return failure(error);
  out.catalog = *catalog;
  if (std::string reason = offlineReason(out.catalog); !reason.empty()) return failure("Drive Offline: " + reason);
  out.steps = PlanEngine::validate(out.plan, out.catalog.rootPath, PlanStep::Kind::move);
  return kExitOk;
}

int planCheck(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json"}, {"--catalog"});
  Prepared p;
  if (int status = prepare("plan check", args, context, p)) return status;
  if (args.flag("--json")) {
    std::puts(nlohmann::json{{"root", p.catalog.rootPath}, {"steps", stepsJSON(p.steps)}}.dump(2).c_str());
  } else {
    std::printf("Plan %s on \u201C%s\u201D (%s)%s\n\n", p.planFile.c_str(), p.catalog.name.c_str(),
                p.catalog.rootPath.c_str(), p.plan.description ? (": " + *p.plan.description).c_str() : "");
    printSteps(p.steps);
  }
  return kExitOk;
}

int planApply(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--json", "--yes"}, {"--catalog"});
  Prepared p;
  if (int status = prepare("plan apply", args, context, p)) return status;
  const bool json = args.flag("--json");
  const size_t ok = okCount(p.steps);
  if (!json) printSteps(p.steps);
  if (ok == 0) {
    if (json) std::puts(nlohmann::json{{"applied", false}, {"steps", stepsJSON(p.steps)}}.dump(2).c_str());
    else std::puts("Nothing to apply: no step is ready.");
    return kExitOk;
  }
  if (!args.flag("--yes")) {
    if (!isatty(STDIN_FILENO))
      return usageError("plan apply", "will not apply without asking; no terminal to ask on, so pass --yes");
    std::fputs("\nFiles and folders will be moved and created exactly as previewed. Nothing is deleted or "
               "overwritten, and you can undo the whole plan with 'orrelin-cli undo'.\n", stderr);
    if (!confirm("Apply " + plural(ok, "step") + " to the drive?")) {
      std::fputs("Cancelled; nothing was changed.\n", stderr);
      return kExitFailure;
    }
  }
  std::string title = p.plan.description && !p.plan.description->empty()
                          ? *p.plan.description
                          : std::filesystem::path(p.planFile).filename().string();
  if (title.empty()) title = "Organization plan";
  auto result = PlanEngine::execute(p.steps, p.catalog.rootPath, title, /*saveLog=*/true);
  const UndoLog& log = result.log;
  if (json) {
    std::puts(nlohmann::json{{"applied", true},
                             {"log", log.id},
                             {"moved", log.moves.size()},
                             {"foldersCreated", log.createdFolders.size()},
                             {"errors", result.errors}}
                  .dump(2)
                  .c_str());
  } else if (result.errors.empty()) {
    std::printf("\nPlan applied: %zu moved, %zu folders created. Undo with: orrelin-cli undo %s\n",
                log.moves.size(), log.createdFolders.size(), log.id.c_str());
  } else {
    std::printf("\nPlan Partly Applied: %zu items moved, %zu folders created. Undo with: orrelin-cli undo %s\n",
                log.moves.size(), log.createdFolders.size(), log.id.c_str());
    std::fputs("Problems:\n", stderr);
    for (const std::string& e : result.errors) std::fprintf(stderr, "  %s\n", e.c_str());
  }
  return result.errors.empty() ? kExitOk : kExitFailure;
}

int plan(const std::vector<std::string>& argv, const Context& context) {
  if (argv.empty() || argv.front().rfind("-", 0) == 0)
    return usageError("plan", "give a subcommand: 'check' or 'apply'");
  std::vector<std::string> rest(argv.begin() + 1, argv.end());
  if (argv.front() == "check") return planCheck(rest, context);
  if (argv.front() == "apply") return planApply(rest, context);
  return usageError("plan", "unknown subcommand '" + argv.front() + "' (use 'check' or 'apply')");
}

int undoList(const std::vector<std::string>& argv) {
  Args args(argv, {"--json"}, {});
  if (!args.ok()) return usageError("undo", args.error());
  if (!args.positionals().empty()) return usageError("undo", "'undo list' takes no arguments");
  auto logs = UndoLogStore::list();
  if (args.flag("--json")) {
    nlohmann::json out = nlohmann::json::array();
    for (const UndoLog& log : logs) out.push_back(log.toJSON());
    std::puts(out.dump(2).c_str());
    return kExitOk;
  }
  if (logs.empty()) {
    std::puts("No applied plans or renames yet.");
    return kExitOk;
  }
  std::printf("%-36s  %-20s  %6s  %7s  %-6s  %s\n", "ID", "CREATED", "MOVED", "FOLDERS", "STATE", "TITLE");
  for (const UndoLog& log : logs)
    std::printf("%-36s  %-20s  %6zu  %7zu  %-6s  %s\n", log.id.c_str(), Fmt::iso(log.created).c_str(),
                log.moves.size(), log.createdFolders.size(), log.undone ? "undone" : "", log.title.c_str());
  return kExitOk;
}

// The log whose id is `text`, or the only one whose id begins with it, ignoring case.
std::optional<UndoLog> findLog(const std::string& text, std::string& error) {
  std::string wanted;
  for (char c : text) wanted += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  std::vector<UndoLog> matches;
  for (UndoLog& log : UndoLogStore::list()) {
    if (log.id == wanted) return log;
    if (log.id.rfind(wanted, 0) == 0) matches.push_back(std::move(log));
  }
  if (matches.size() == 1) return matches.front();
  error = matches.empty() ? "no undo log has the id '" + text + "' (see 'orrelin-cli undo list')"
                          : "several undo logs begin with '" + text + "'; give more of the id";
  return std::nullopt;
}

int undo(const std::vector<std::string>& argv, const Context&) {
  if (!argv.empty() && argv.front() == "list") return undoList({argv.begin() + 1, argv.end()});
  Args args(argv, {"--json", "--yes"}, {});
  if (!args.ok()) return usageError("undo", args.error());
  if (args.positionals().size() != 1)
    return usageError("undo", "give one undo log id, or 'list' to see them");
  std::string error;
  auto log = findLog(args.positionals().front(), error);
  if (!log) return failure(error);
  if (log->undone) return failure("\u201C" + log->title + "\u201D was undone already.");
  if (!args.flag("--yes")) {
    if (!isatty(STDIN_FILENO)) return usageError("undo", "will not undo without asking; no terminal to ask on, so pass --yes");
    if (!confirm("Undo \u201C" + log->title + "\u201D: put " + plural(log->moves.size(), "item") + " back in " +
                 log->root + "?")) {
      std::fputs("Cancelled; nothing was changed.\n", stderr);
      return kExitFailure;
    }
  }
  auto result = PlanEngine::undo(*log, /*saveLog=*/true);
  if (args.flag("--json")) {
    std::puts(nlohmann::json{{"log", log->id}, {"restored", result.restored}, {"errors", result.errors}}.dump(2).c_str());
  } else if (result.errors.empty()) {
    std::printf("Undone: %s restored\n", plural(static_cast<size_t>(result.restored), "item").c_str());
  } else {
    std::printf("Undo Partly Completed: %d restored. Problems:\n", result.restored);
    for (const std::string& e : result.errors) std::fprintf(stderr, "  %s\n", e.c_str());
  }
  return result.errors.empty() ? kExitOk : kExitFailure;
}

}  // namespace

void addOrganizeCommands(CommandTable& table) {
  table["plan"] = {
      "dry-run or apply an organization plan (JSON) on a cartridge's drive",
      "usage: orrelin-cli [--db PATH] plan check PLAN.json --catalog ID-OR-NAME [--json]\n"
      "       orrelin-cli [--db PATH] plan apply PLAN.json --catalog ID-OR-NAME [--yes] [--json]\n"
      "\n"
      "An organization plan is a JSON file that names folders to create and files or folders to move or\n"
      "rename, relative to the root of a cartridge's drive or folder:\n"
      "\n"
      "  {\"description\": \"Sort the photos\", \"newFolders\": [\"Photos/2024\"],\n"
      "   \"moves\": [{\"from\": \"IMG_0001.JPG\", \"to\": \"Photos/2024/IMG_0001.JPG\"}]}\n"
      "\n"
      "check   prints the dry run: one line per folder and move with its verdict. Nothing changes.\n"
      "apply   prints the dry run, asks for confirmation on the terminal, then carries out the steps that\n"
      "        are ready, in order, and writes an undo log. Steps that fail are reported and skipped.\n"
      "\n"
      "Every path must stay inside the drive (\"..\" and links out of it are blocked), nothing is ever\n"
      "overwritten or deleted, and an applied plan can be undone with 'orrelin-cli undo'. The drive must be\n"
      "connected.\n"
      "\n"
      "Options:\n"
      "  --catalog ID-OR-NAME  the cartridge whose drive the plan is for (see 'orrelin-cli list')\n"
      "  --yes                 apply without asking (required when there is no terminal)\n"
      "  --json                print the steps and the outcome as JSON\n"
      "\n"
      "Exit status: 0 done; 1 the plan could not be loaded, the drive is offline, a step failed or the\n"
      "confirmation was declined; 2 a wrong command line.\n",
      plan};
  table["undo"] = {
      "list the applied plans and renames, or undo one",
      "usage: orrelin-cli undo list [--json]\n"
      "       orrelin-cli undo LOG-ID [--yes] [--json]\n"
      "\n"
      "Every applied plan and batch rename leaves an undo log in \"Undo Logs\" of the data folder.\n"
      "'undo list' shows them, newest first. 'undo LOG-ID' (the full id or a unique beginning of it) moves\n"
      "the items back, last move first, and removes the folders the plan created if they are empty again.\n"
      "An item whose old place is taken, or that is no longer where the plan put it, stays and is\n"
      "reported. A log can be undone once.\n"
      "\n"
      "Options:\n"
      "  --yes   undo without asking (required when there is no terminal)\n"
      "  --json  print the logs or the outcome as JSON\n"
      "\n"
      "Exit status: 0 done; 1 no such log, already undone, something could not be put back or the\n"
      "confirmation was declined; 2 a wrong command line.\n",
      undo};
}

}  // namespace orrelin::cli
