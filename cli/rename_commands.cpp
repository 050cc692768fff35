// The rename command of orrelin-cli: a batch rename of a connected drive by one rule, previewed as a dry
// run and, on request, carried out with an undo log.
#include <algorithm>
#include <charconv>
#include <cstdio>

#include "cli/args.h"
#include "cli/command_table.h"
#include "core/name_mapping.h"
#include "organize/rename_pane.h"
#include "store/catalog_db.h"

namespace orrelin::cli {

namespace {

constexpr const char* kCommand = "rename";

constexpr const char* kHelp =
    "usage: orrelin-cli [--db PATH] rename --catalog CARTRIDGE [SELECTION] [RULE] [--apply]\n"
    "\n"
    "Renames many files of a connected drive by one rule. Without --apply nothing changes: the dry run\n"
    "lists every rename with its verdict. With --apply the ready renames are carried out, nothing is ever\n"
    "overwritten, and the undo log's id is printed; the batch can be undone like any organization plan.\n"
    "\n"
    "Selection (from the cartridge's records; the drive must be connected):\n"
    "  --catalog C         the cartridge, by id or by name (required)\n"
    "  --folder F          the folder inside the drive; blank or absent means the top level\n"
    "  --subfolders        also everything below that folder\n"
    "  --folders           rename folders too, not only files\n"
    "  --filter T          only names that contain T, ignoring case\n"
    "\n"
    "Rule, applied to each name in this order:\n"
    "  --no-keep-ext       let the extension take part in every step (by default it is set aside and\n"
    "                      put back unchanged)\n"
    "  --find X            replace every X, ignoring case ...\n"
    "  --replace Y         ... by Y (default: nothing)\n"
    "  --regex             X is a regular expression (ICU syntax, case-sensitive unless it says (?i));\n"
    "                      Y may use $0 for the match and $1, $2 ... for its groups. A pattern that does\n"
    "                      not compile is looked for as plain text.\n"
    "  --case MODE         keep (default), lower, upper or title (first letter of each word)\n"
    "  --prefix P          put P before the name\n"
    "  --suffix S          put S after the name, before the extension\n"
    "  --number START:DIGITS\n"
    "                      append a blank and a number counting from START in path order, zero padded\n"
    "                      to DIGITS (1 to 6; default 3)\n"
    "  Every '/' or ':' in a new name becomes '-'.\n"
    "\n"
    "  --apply             carry out the ready renames\n"
    "\n"
    "Files are numbered in the order a file manager lists their paths (file2 before file10). A rename\n"
    "whose target exists, or that collides with an earlier one, is blocked and left out.\n"
    "Exit status: 0 done (or nothing to do), 1 a failure (drive offline, nothing ready to apply, or a\n"
    "rename that failed), 2 a wrong command line.\n";

// Parses an integer that fills the whole text.
template <class T>
bool parseInteger(const std::string& text, T& out) {
  const char* end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, out);
  return ec == std::errc() && ptr == end && !text.empty();
}

// Reads the rule's options into `rule`; returns an error text, empty when they are all right.
std::string readRule(const Args& args, RenameRule& rule) {
  auto text = [&](const char* name) { return NameMapping::fromDisk(args.value(name).value_or("")); };
  rule.find = text("--find");
  rule.replace = text("--replace");
  rule.prefix = text("--prefix");
  rule.suffix = text("--suffix");
  rule.useRegex = args.flag("--regex");
  rule.keepExtension = !args.flag("--no-keep-ext");
  if (rule.find.empty() && args.value("--replace")) return "--replace needs a non-empty --find";
  if (rule.find.empty() && rule.useRegex) return "--regex needs a non-empty --find";
  if (auto mode = args.value("--case")) {
    static const std::pair<const char*, RenameRule::CaseMode> kModes[] = {
        {"keep", RenameRule::CaseMode::keep},
        {"lower", RenameRule::CaseMode::lower},
        {"upper", RenameRule::CaseMode::upper},
        {"title", RenameRule::CaseMode::title}};
    auto it =
        std::find_if(std::begin(kModes), std::end(kModes), [&](const auto& m) { return *mode == m.first; });
    if (it == std::end(kModes)) return "--case is keep, lower, upper or title (got '" + *mode + "')";
    rule.caseMode = it->second;
  }
  if (auto number = args.value("--number")) {
    size_t colon = number->find(':');
    std::string start = number->substr(0, colon);
    std::string digits = colon == std::string::npos ? "3" : number->substr(colon + 1);
    int64_t startValue = 0;
    int digitsValue = 0;
    if (!parseInteger(start, startValue) || !parseInteger(digits, digitsValue) || digitsValue < 1 ||
        digitsValue > 6)
      return "--number is START:DIGITS, a whole number and 1 to 6 digits, such as 1:3 (got '" + *number +
             "')";
    rule.numbering = true;
    rule.start = startValue;
    rule.digits = digitsValue;
  }
  return {};
}

// Number of characters (not bytes) of UTF-8 text, for lining up columns.
size_t columns(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, size_t width) {
  size_t have = columns(text);
  return have >= width ? text : text + std::string(width - have, ' ');
}

void printSteps(const std::vector<PlanStep>& steps) {
  constexpr size_t kWidest = 48;  // Longer paths push their row out instead of being cut.
  size_t fromWidth = 4, toWidth = 2;
  for (const PlanStep& s : steps) {
    fromWidth = std::max(fromWidth, std::min(kWidest, columns(s.from)));
    toWidth = std::max(toWidth, std::min(kWidest, columns(s.to)));
  }
  std::printf("%s  %s  %s\n", padded("FROM", fromWidth).c_str(), padded("TO", toWidth).c_str(), "STATUS");
  for (const PlanStep& s : steps) {
    std::printf("%s  %s  %s%s\n", padded(NameMapping::toDisk(s.from), fromWidth).c_str(),
                padded(NameMapping::toDisk(s.to), toWidth).c_str(),
                s.ok ? "" : "BLOCKED: ", s.status.c_str());
  }
  size_t ready =
      static_cast<size_t>(std::count_if(steps.begin(), steps.end(), [](const PlanStep& s) { return s.ok; }));
  std::printf("\n%zu rename%s: %zu ready, %zu blocked\n", steps.size(), steps.size() == 1 ? "" : "s", ready,
              steps.size() - ready);
}

int rename(const std::vector<std::string>& argv, const Context& context) {
  Args args(argv, {"--subfolders", "--folders", "--regex", "--no-keep-ext", "--apply"},
            {"--catalog", "--folder", "--filter", "--find", "--replace", "--prefix", "--suffix", "--case",
             "--number"});
  if (!args.ok()) return usageError(kCommand, args.error());
  if (!args.positionals().empty())
    return usageError(kCommand, "takes no arguments (got '" + args.positionals().front() + "')");
  auto catalogName = args.value("--catalog");
  if (!catalogName) return usageError(kCommand, "which cartridge? Give --catalog with its id or name");
  RenamePane pane;
  if (std::string problem = readRule(args, pane.rule); !problem.empty()) return usageError(kCommand, problem);
  pane.folder = NameMapping::fromDisk(args.value("--folder").value_or(""));
  pane.filter = NameMapping::fromDisk(args.value("--filter").value_or(""));
  pane.includeSub = args.flag("--subfolders");
  pane.includeFolders = args.flag("--folders");

  CatalogDB store(databasePath(context));
  std::string error;
  std::optional<Catalog> catalog = findCatalog(store, *catalogName, error);
  if (!catalog) return failure(error);
  pane.catalogID = catalog->id;

  RenameOutcome preview = pane.preview(&store);
  if (preview.alert) return failure(preview.alert->title + ": " + preview.alert->message);
  if (preview.toast) {
    std::printf("%s\n", preview.toast->c_str());
    return kExitOk;
  }
  printSteps(pane.steps);
  size_t ready = static_cast<size_t>(
      std::count_if(pane.steps.begin(), pane.steps.end(), [](const PlanStep& s) { return s.ok; }));
  if (!args.flag("--apply")) {
    if (ready == 0) {
      std::printf("Dry run: nothing was changed, and no rename is ready.\n");
    } else {
      std::printf("Dry run: nothing was changed. Add --apply to carry out the %zu ready rename%s.\n", ready,
                  ready == 1 ? "" : "s");
    }
    return kExitOk;
  }
  if (ready == 0) return failure("no rename is ready; nothing was changed");

  RenameOutcome applied = pane.apply(&store);
  if (!applied.log)
    return failure("the drive of '" + catalog->name + "' is no longer connected; nothing was changed");
  std::printf("\n");
  if (applied.toast) std::printf("%s\n", applied.toast->c_str());
  std::printf("Undo log: %s\n", applied.log->id.c_str());
  std::printf("The cartridge shows the old names until it is scanned again.\n");
  if (applied.alert) {
    std::fprintf(stderr, "orrelin-cli: %s (%zu renamed):\n", applied.alert->title.c_str(),
                 applied.log->moves.size());
    for (const std::string& line : applied.errors) std::fprintf(stderr, "  %s\n", line.c_str());
    return kExitFailure;
  }
  return kExitOk;
}

}  // namespace

void addRenameCommands(CommandTable& table) {
  table[kCommand] = {"rename many files of a connected drive by one rule, with undo", kHelp, rename};
}

}  // namespace orrelin::cli
