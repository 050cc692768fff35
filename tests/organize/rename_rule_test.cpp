// Rename rules: each text step, the order in which they apply, and the plan a rule makes of records.
#include "organize/rename_rule.h"

#include <gtest/gtest.h>

#include "organize/name_text.h"

namespace orrelin {
namespace {

struct Case {
  std::string name;
  RenameRule rule;
  std::string expected;
  int64_t index = 0;
};

RenameRule findRule(std::string find, std::string replace, bool regex = false) {
  RenameRule r;
  r.find = std::move(find);
  r.replace = std::move(replace);
  r.useRegex = regex;
  return r;
}

RenameRule caseRule(RenameRule::CaseMode mode, bool keepExtension = true) {
  RenameRule r;
  r.caseMode = mode;
  r.keepExtension = keepExtension;
  return r;
}

RenameRule numbered(int64_t start, int digits) {
  RenameRule r;
  r.numbering = true;
  r.start = start;
  r.digits = digits;
  return r;
}

void expectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases)
    EXPECT_EQ(c.rule.newName(c.name, c.index), c.expected)
        << "name '" << c.name << "' find '" << c.rule.find << "'";
}

TEST(RenameRuleTest, LiteralFindIgnoresCaseAndMatchesWholeCharacters) {
  expectAll({
      {"IMG_0001.JPG", findRule("img_", "photo_"), "photo_0001.JPG"},
      {"aAaA.txt", findRule("A", "b"), "bbbb.txt"},
      // Full case folding: the sharp s is "ss", but half of it is no match.
      {"Straße.txt", findRule("STRASSE", "Road"), "Road.txt"},
      {"Straße.txt", findRule("s", "z"), "ztraße.txt"},
      // Composed and decomposed accents are the same text; a letter is not matched apart from its accent.
      {"cafe\u0301.txt", findRule("CAFÉ", "bar"), "bar.txt"},
      {"café.txt", findRule("cafe\u0301", "bar"), "bar.txt"},
      {"cafe\u0301.txt", findRule("cafe", "bar"), "cafe\u0301.txt"},
      // The extension set aside is out of the find's reach; without keepExtension it is in.
      {"jpg.jpg", findRule("jpg", "x"), "x.jpg"},
      {"jpg.jpg",
       [] {
         auto r = findRule("jpg", "x");
         r.keepExtension = false;
         return r;
       }(),
       "x.x"},
      {"a.txt", findRule("", "zzz"), "a.txt"},
  });
}

TEST(RenameRuleTest, RegexReplacesWithTemplatesAndIsCaseSensitive) {
  expectAll({
      {"IMG_0001.JPG", findRule("IMG_(\\d+)", "photo-$1", true), "photo-0001.JPG"},
      {"IMG_0001.JPG", findRule("img_(\\d+)", "photo-$1", true), "IMG_0001.JPG"},
      {"IMG_0001.JPG", findRule("(?i)img_", "p", true), "p0001.JPG"},
      {"2024-05-17 trip.jpg", findRule("(\\d+)-(\\d+)-(\\d+)", "$3.$2.$1", true), "17.05.2024 trip.jpg"},
      {"ab.txt", findRule("a(b)", "[$0|$1]", true), "[ab|b].txt"},
      // "$12" with one group is group 1 and a "2"; a group that does not exist, or did not take part, is
      // empty; a backslash makes the next character literal; a "$" without a digit is itself.
      {"ab.txt", findRule("a(b)", "$12", true), "b2.txt"},
      {"ab.txt", findRule("a(b)", "<$7>", true), "<>.txt"},
      {"ab.txt", findRule("a(x)?b", "<$1>", true), "<>.txt"},
      {"ab.txt", findRule("a(b)", "\\$1", true), "$1.txt"},
      {"ab.txt", findRule("a", "$", true), "$b.txt"},
      // Empty matches replace at every position, as the platform's engine does.
      {"abc", findRule("x*", "-", true), "-a-b-c-"},
      {"abc.txt", findRule("^", "new ", true), "new abc.txt"},
      // The regex sees the name without the kept extension.
      {"a.JPG", findRule("\\.JPG$", "", true), "a.JPG"},
  });
}

TEST(RenameRuleTest, AnInvalidPatternIsLookedForAsPlainText) {
  expectAll({
      {"a(b.txt", findRule("(", "[", true), "a[b.txt"},
      {"A(B.txt", findRule("a(b", "x", true), "x.txt"},
      {"plain.txt", findRule("(", "[", true), "plain.txt"},
  });
}

TEST(RenameRuleTest, ARunawayPatternLeavesTheTextButNotTheOtherSteps) {
  RenameRule runaway = findRule("(a+)+$", "x", true);
  runaway.prefix = "p ";
  std::vector<FileRecord> files(40);
  for (size_t i = 0; i < files.size(); ++i)
    files[i].path = files[i].name = std::string(40, 'a') + "b" + std::to_string(i);
  OrganizationPlan plan = runaway.plan(files);
  ASSERT_TRUE(plan.moves);
  ASSERT_EQ(plan.moves->size(), files.size());
  for (size_t i = 0; i < files.size(); ++i) EXPECT_EQ((*plan.moves)[i].to, "p " + files[i].name);
  // The same pattern on a name it settles quickly still works.
  EXPECT_EQ(runaway.newName("aaa", 0), "p x");
}

TEST(RenameRuleTest, CaseMappingsAreFullAndFreeOfAnyLanguage) {
  using M = RenameRule::CaseMode;
  expectAll({
      {"straße.txt", caseRule(M::upper), "STRASSE.txt"},
      {"ÄRGER.txt", caseRule(M::lower), "ärger.txt"},
      // The root locale: a capital I is always "i", a small i always "I".
      {"INFO.txt", caseRule(M::lower), "info.txt"},
      {"istanbul", caseRule(M::upper), "ISTANBUL"},
      {"İstanbul", caseRule(M::lower), "i\u0307stanbul"},
      // Greek final sigma follows its position in the word.
      {"ΟΔΟΣ ΟΔΟΣ", caseRule(M::lower), "\u03bf\u03b4\u03bf\u03c2 \u03bf\u03b4\u03bf\u03c2"},
      {"A.JPG", caseRule(M::lower, /*keepExtension=*/false), "a.jpg"},
      {"Photo.JpG", caseRule(M::upper), "PHOTO.JpG"},
      {"MiXeD.txt", caseRule(M::keep), "MiXeD.txt"},
  });
}

TEST(RenameRuleTest, TitleCaseWorksWordByWordBetweenWhiteSpace) {
  using M = RenameRule::CaseMode;
  expectAll({
      {"hello WORLD", caseRule(M::title), "Hello World"},
      {"hello\tWORLD\nagain  twice.txt", caseRule(M::title), "Hello\tWorld\nAgain  Twice.txt"},
      // Words are split by white space only, and the first letter counts, not the first character.
      {"o'NEIL mcDONALD-smith", caseRule(M::title), "O'neil Mcdonald-smith"},
      {"3RD (live) take", caseRule(M::title), "3Rd (Live) Take"},
      {"ßig ǆemal", caseRule(M::title), "Ssig ǅemal"},
      {"ÉCOLE", caseRule(M::title), "École"},
      {"  ", caseRule(M::title), "  "},
  });
}

TEST(RenameRuleTest, NumbersArePaddedToClampedDigitsAndCountFromStart) {
  expectAll({
      {"beach.JPG", numbered(5, 3), "beach 005.JPG"},
      {"beach.JPG", numbered(5, 3), "beach 012.JPG", 7},
      {"a", numbered(7, 0), "a 7"},
      {"a", numbered(7, -4), "a 7"},
      {"a", numbered(7, 9), "a 000007"},
      {"a", numbered(1234567, 6), "a 1234567"},
      {"a", numbered(0, 2), "a 00"},
  });
}

TEST(RenameRuleTest, StepsApplyInTheirFixedOrder) {
  RenameRule beach = numbered(5, 3);
  beach.prefix = "2026 ";
  EXPECT_EQ(beach.newName("beach.JPG", 0), "2026 beach 005.JPG");

  // Find runs before the case change: the regex does not see the lowered text.
  RenameRule findThenCase = findRule("abc", "x", true);
  findThenCase.caseMode = RenameRule::CaseMode::lower;
  EXPECT_EQ(findThenCase.newName("ABC.TXT", 0), "abc.TXT");

  // The case change and the find touch neither prefix, suffix nor number.
  RenameRule around = numbered(1, 2);
  around.find = "a";
  around.replace = "o";
  around.prefix = "A ";
  around.suffix = " A";
  around.caseMode = RenameRule::CaseMode::upper;
  EXPECT_EQ(around.newName("banana.txt", 0), "A BONONO A 01.txt");

  // Separators from any source become dashes; the name itself cannot carry them.
  RenameRule separators = findRule("-", "/");
  separators.prefix = "a:b/";
  separators.suffix = ":";
  EXPECT_EQ(separators.newName("x-y.txt", 0), "a-b-x-y-.txt");
}

TEST(RenameRuleTest, ExtensionsFollowTheLastDotExceptAtEitherEnd) {
  EXPECT_EQ(NameText::pathExtension("archive.tar.gz"), "gz");
  EXPECT_EQ(NameText::pathExtension(".bashrc"), "");
  EXPECT_EQ(NameText::pathExtension("notes."), "");
  EXPECT_EQ(NameText::pathExtension("README"), "");
  EXPECT_EQ(NameText::pathExtension(".hidden.txt"), "txt");

  RenameRule upper = caseRule(RenameRule::CaseMode::upper);
  upper.prefix = "x";
  expectAll({
      {"archive.tar.gz", upper, "xARCHIVE.TAR.gz"},
      {".bashrc", upper, "x.BASHRC"},
      {".hidden.txt", upper, "x.HIDDEN.txt"},
      {"notes.", upper, "xNOTES."},
      {"README", upper, "xREADME"},
  });
}

std::vector<FileRecord> records(std::initializer_list<std::string> paths) {
  std::vector<FileRecord> out;
  for (const std::string& p : paths) {
    FileRecord r;
    r.path = p;
    r.name = p.substr(p.rfind('/') == std::string::npos ? 0 : p.rfind('/') + 1);
    out.push_back(r);
  }
  return out;
}

TEST(RenameRulePlanTest, MovesStayInTheirFolderAndUnchangedOrEmptyNamesLeaveGaps) {
  // Strip a trailing number and number afresh: the first keeps its name and is skipped, but its number
  // is used up, so the second gets 002.
  RenameRule renumber = findRule(" \\d+$", "", true);
  renumber.numbering = true;
  OrganizationPlan plan = renumber.plan(records({"p 001.txt", "Trips/2024/q.txt", "r 7.txt"}));
  ASSERT_TRUE(plan.moves);
  EXPECT_EQ(*plan.moves,
            (std::vector<PlanMove>{{"Trips/2024/q.txt", "Trips/2024/q 002.txt"}, {"r 7.txt", "r 003.txt"}}));
  EXPECT_EQ(plan.format, "tvrl-organization-plan");
  EXPECT_EQ(plan.version, 1);
  EXPECT_EQ(plan.description, "Batch rename");
  EXPECT_FALSE(plan.catalog);
  EXPECT_EQ(plan.newFolders, std::vector<std::string>{});

  RenameRule erase = findRule("gone.txt", "");
  erase.keepExtension = false;
  OrganizationPlan emptied = erase.plan(records({"gone.txt", "Docs/GONE.TXT", "kept.txt"}));
  EXPECT_EQ(emptied.moves, std::vector<PlanMove>{});
}

TEST(RenameRulePlanTest, CaseModesReadBackFromTheirLabels) {
  for (auto mode : {RenameRule::CaseMode::keep, RenameRule::CaseMode::lower, RenameRule::CaseMode::upper,
                    RenameRule::CaseMode::title})
    EXPECT_EQ(caseModeFromRaw(rawValue(mode)), mode);
  EXPECT_FALSE(caseModeFromRaw("lower"));
  EXPECT_EQ(parentPath("a/b/c.txt"), "a/b");
  EXPECT_EQ(parentPath("c.txt"), "");
}

}  // namespace
}  // namespace orrelin
