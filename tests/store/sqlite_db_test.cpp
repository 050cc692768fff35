// The SQLite layer against real database files: errors, binding, locking, transactions, backup, REGEXP.
#include "store/sqlite_db.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "store/regex_cache.h"
#include "support/temp_dir.h"

namespace orrelin {
namespace {

using testing::TempDir;

class SQLiteDBTest : public ::testing::Test {
 protected:
  TempDir dir;
  SQLiteDB db{dir.file("t.sqlite")};
};

TEST_F(SQLiteDBTest, OpensWithTheProgramsPragmas) {
  EXPECT_EQ(db.scalarText("PRAGMA journal_mode"), "wal");
  EXPECT_EQ(db.scalarInt("PRAGMA synchronous"), 1);  // NORMAL
  EXPECT_EQ(db.scalarInt("PRAGMA foreign_keys"), 1);
  EXPECT_EQ(db.scalarInt("PRAGMA temp_store"), 2);  // MEMORY
}

TEST(SQLiteDBErrors, OpenFailuresCarryTheMessage) {
  TempDir dir;
  try {
    SQLiteDB db(dir.file("missing/dir/t.sqlite"));
    FAIL() << "opened a database in a missing folder";
  } catch (const DBError& e) {
    EXPECT_EQ(e.kind(), DBError::Kind::open);
    EXPECT_EQ(std::string(e.what()), "Could not open the catalog database: unable to open database file");
  }
  // A file that is no database fails at the pragma batch, as a step error.
  testing::writeFile(dir.path() / "junk.sqlite", std::string(4096, 'x'));
  try {
    SQLiteDB db(dir.file("junk.sqlite"));
    FAIL() << "opened a file that is no database";
  } catch (const DBError& e) {
    EXPECT_EQ(e.kind(), DBError::Kind::step);
    EXPECT_EQ(std::string(e.what()), "Database error: file is not a database");
  }
}

TEST_F(SQLiteDBTest, PrepareErrorsQuoteTheFirst120Characters) {
  std::string sql = "SELEC " + std::string(200, 'x');
  try {
    db.prepare(sql);
    FAIL();
  } catch (const DBError& e) {
    EXPECT_EQ(e.kind(), DBError::Kind::prepare);
    std::string expected = "Database query error: near \"SELEC\": syntax error — " + sql.substr(0, 120);
    EXPECT_EQ(std::string(e.what()), expected);
  }
  // Characters, not bytes: a multi-byte character is never cut in half.
  std::string accented = "SELEC " + std::string("é") + std::string(150, 'e');
  try {
    db.prepare(accented);
    FAIL();
  } catch (const DBError& e) {
    std::string what = e.what();
    std::string tail = what.substr(what.find(" — ") + std::string(" — ").size());
    EXPECT_EQ(tail, accented.substr(0, 121));  // 120 characters, one of them two bytes.
  }
  EXPECT_THROW(db.prepare(""), DBError);
  EXPECT_THROW(db.prepare("   "), DBError);
}

TEST_F(SQLiteDBTest, StepAndExecErrorsAreStepErrors) {
  db.exec("CREATE TABLE t(a INTEGER NOT NULL UNIQUE)");
  db.run("INSERT INTO t VALUES(1)");
  try {
    db.run("INSERT INTO t VALUES(1)");
    FAIL();
  } catch (const DBError& e) {
    EXPECT_EQ(e.kind(), DBError::Kind::step);
    EXPECT_EQ(std::string(e.what()), "Database error: UNIQUE constraint failed: t.a");
  }
  try {
    db.exec("CREATE TABLE t(b)");
    FAIL();
  } catch (const DBError& e) {
    EXPECT_EQ(std::string(e.what()), "Database error: table t already exists");
  }
  // The connection stays usable after failures.
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 1);
}

TEST_F(SQLiteDBTest, BindsEveryValueType) {
  db.exec("CREATE TABLE v(x)");
  Statement insert = db.prepare("INSERT INTO v VALUES(?)");
  const SQLArgs values = {std::nullopt,    42,     int64_t{1} << 40,      true,
                          false,           2.5,    Date{1.5e9},           "text",
                          Blob{{1, 2, 3}}, Blob{}, std::string("a\0b", 3)};
  for (const SQLValue& v : values) db.step(insert, {v});
  auto rows = db.query("SELECT typeof(x), quote(x) FROM v ORDER BY rowid", {},
                       [](const Statement& r) { return r.text(0) + " " + r.text(1); });
  std::vector<std::string> expected = {
      "null NULL", "integer 42",        "integer 1099511627776", "integer 1",      "integer 0",
      "real 2.5",  "real 1500000000.0", "text 'text'",           "blob X'010203'", "blob X''",
      "text 'a'",  // Text ends at its first NUL.
  };
  EXPECT_EQ(rows, expected);

  std::optional<int64_t> absent;
  std::optional<int64_t> present = 7;
  EXPECT_EQ(db.scalarText("SELECT quote(?) || quote(?)", {absent, present}), "NULL7");
}

TEST_F(SQLiteDBTest, RebindingReplacesEarlierArguments) {
  Statement select = db.prepare("SELECT ?1 IS NULL, ?2");
  ASSERT_TRUE(db.step(select, {1, 2}));
  EXPECT_FALSE(select.boolean(0));
  // Fewer arguments than before: the rest is cleared to NULL, not kept.
  ASSERT_TRUE(db.step(select, {std::nullopt}));
  EXPECT_TRUE(select.boolean(0));
  EXPECT_TRUE(select.isNull(1));
}

TEST_F(SQLiteDBTest, ColumnReads) {
  auto row = db.query("SELECT NULL, 3.75, 'x', 1700000000.25, 0", {}, [](const Statement& r) {
    EXPECT_TRUE(r.isNull(0));
    EXPECT_EQ(r.text(0), "");
    EXPECT_FALSE(r.date(0).has_value());
    EXPECT_EQ(r.real(1), 3.75);
    EXPECT_EQ(r.int64(1), 3);
    EXPECT_EQ(r.text(2), "x");
    EXPECT_EQ(r.date(3)->seconds, 1700000000.25);
    EXPECT_FALSE(r.boolean(4));
    return 1;
  });
  EXPECT_EQ(row.size(), 1u);
}

TEST_F(SQLiteDBTest, ScalarsWithAndWithoutRows) {
  db.exec("CREATE TABLE t(a, b); INSERT INTO t VALUES(5, NULL); INSERT INTO t VALUES(6, 'six');");
  EXPECT_EQ(db.scalarInt("SELECT a FROM t WHERE 0"), 0);
  EXPECT_EQ(db.scalarText("SELECT b FROM t WHERE 0"), std::nullopt);
  EXPECT_EQ(db.scalarText("SELECT b FROM t ORDER BY a"), std::nullopt);  // First row's NULL.
  EXPECT_EQ(db.scalarInt("SELECT a FROM t ORDER BY a DESC"), 6);
  EXPECT_EQ(db.run("UPDATE t SET a=a+1"), 2);
  db.run("INSERT INTO t VALUES(9, 'nine')");
  EXPECT_EQ(db.lastInsertID(), 3);
}

TEST_F(SQLiteDBTest, NestedUseDoesNotDeadlock) {
  db.exec("CREATE TABLE t(a)");
  db.transaction([&] {
    db.run("INSERT INTO t VALUES(1)");
    db.run("INSERT INTO t VALUES(2)");
    // A query whose row callback queries again, inside the transaction.
    auto sums = db.query("SELECT a FROM t ORDER BY a", {}, [&](const Statement& r) {
      return db.scalarInt("SELECT sum(a) FROM t WHERE a<=?", {r.int64(0)});
    });
    EXPECT_EQ(sums, (std::vector<int64_t>{1, 3}));
  });
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 2);
}

TEST_F(SQLiteDBTest, AFailedTransactionLeavesNoTrace) {
  db.exec("CREATE TABLE t(a UNIQUE)");
  db.run("INSERT INTO t VALUES(1)");
  EXPECT_THROW(db.transaction([&] {
    db.run("INSERT INTO t VALUES(2)");
    db.run("INSERT INTO t VALUES(1)");  // Fails on the unique column.
  }),
               DBError);
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 1);
  // A non-database failure of the body rolls back too, and is passed on as it is.
  EXPECT_THROW(db.transaction([&] {
    db.run("INSERT INTO t VALUES(3)");
    throw std::runtime_error("body failed");
  }),
               std::runtime_error);
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 1);
  // The connection is not left inside a transaction.
  db.transaction([&] { db.run("INSERT INTO t VALUES(4)"); });
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 2);
}

TEST_F(SQLiteDBTest, TransactionsTakeTheWriteLockAtTheStart) {
  db.exec("CREATE TABLE t(a)");
  SQLiteDB other(dir.file("t.sqlite"));
  sqlite3_busy_timeout(other.handle(), 50);  // Keep the wait of this test short.
  db.transaction([&] {
    // Another connection reads during the transaction, but cannot begin its own.
    EXPECT_EQ(other.scalarInt("SELECT count(*) FROM t"), 0);
    EXPECT_THROW(other.transaction([] {}), DBError);
  });
  other.transaction([&] { other.run("INSERT INTO t VALUES(1)"); });
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM t"), 1);
}

TEST_F(SQLiteDBTest, ClosedConnectionsFailInsteadOfCrashing) {
  db.close();
  db.close();
  EXPECT_EQ(db.errorMessage(), "closed");
  try {
    db.prepare("SELECT 1");
    FAIL();
  } catch (const DBError& e) {
    EXPECT_EQ(std::string(e.what()).rfind("Database query error: closed", 0), 0u) << e.what();
  }
  EXPECT_THROW(db.exec("SELECT 1"), DBError);
}

TEST_F(SQLiteDBTest, BackupCopiesTheWholeDatabase) {
  db.exec("CREATE TABLE t(a); INSERT INTO t VALUES('kept');");
  db.backup(dir.file("copy.sqlite"));
  SQLiteDB copy(dir.file("copy.sqlite"));
  EXPECT_EQ(copy.scalarText("SELECT a FROM t"), "kept");

  try {
    db.backup(dir.file("missing/copy.sqlite"));
    FAIL();
  } catch (const DBError& e) {
    EXPECT_EQ(std::string(e.what()), "Could not open the catalog database: backup destination");
  }
}

TEST_F(SQLiteDBTest, RegexpIsCaseInsensitiveAndForgiving) {
  db.exec(
      "CREATE TABLE n(name); INSERT INTO n VALUES('README.TXT'), ('notes.md'), (NULL), ('Ünïcode'), "
      "('a\nb');");
  auto matching = [&](const std::string& pattern) {
    return db.query("SELECT name FROM n WHERE name REGEXP ? ORDER BY rowid", {pattern},
                    [](const Statement& r) { return r.text(0); });
  };
  EXPECT_EQ(matching("readme"), (std::vector<std::string>{"README.TXT"}));
  EXPECT_EQ(matching("\\.(txt|md)$"), (std::vector<std::string>{"README.TXT", "notes.md"}));
  EXPECT_EQ(matching("^ün"), (std::vector<std::string>{"Ünïcode"}));  // Unicode case folding.
  EXPECT_EQ(matching("^b"), std::vector<std::string>{});  // ^ anchors at the start of the text only.
  // Long texts and patterns (past any small-string buffer) match like short ones.
  const std::string longName = "holiday_photo_from_the_summer_of_2019_with_the_whole_family.jpg";
  db.run("INSERT INTO n VALUES(?)", {longName});
  EXPECT_EQ(matching("HOLIDAY_PHOTO_FROM_THE_SUMMER_OF_2019_WITH"), std::vector<std::string>{longName});
  EXPECT_EQ(matching("family\\.jpg$"), std::vector<std::string>{longName});
  // A bad pattern matches nothing and raises no error; so does a NULL pattern.
  EXPECT_TRUE(matching("([unclosed").empty());
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM n WHERE name REGEXP NULL"), 0);
  EXPECT_THROW(db.prepare("SELECT regexp('x')"), DBError);  // SQLite checks the argument count.
}

TEST(RegexCache, The66thPatternEmptiesTheCache) {
  // Start from a known state: fill until the cache empties itself once.
  for (int i = 0; regexCacheSize() != 1 || i == 0; ++i) cachedRegex("warmup" + std::to_string(i));
  for (int i = 1; i <= 64; ++i) ASSERT_NE(cachedRegex("p" + std::to_string(i)), nullptr);
  EXPECT_EQ(regexCacheSize(), 65u);
  auto again = cachedRegex("p1");  // A hit adds nothing.
  EXPECT_EQ(regexCacheSize(), 65u);
  ASSERT_NE(cachedRegex("p66"), nullptr);
  EXPECT_EQ(regexCacheSize(), 1u);
  // Failures are not cached.
  EXPECT_EQ(cachedRegex("(bad"), nullptr);
  EXPECT_EQ(regexCacheSize(), 1u);
  // Results stay right across the flush: the old compiled form is still valid for its holder.
  EXPECT_TRUE(regexFindsMatch(again, "P1"));
  EXPECT_FALSE(regexFindsMatch(again, "p2"));
}

TEST(RegexCache, APathologicalPatternTimesOutAsNoMatch) {
  auto evil = cachedRegex("(x+x+)+y");
  ASSERT_NE(evil, nullptr);
  std::string name(60, 'x');
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(regexFindsMatch(evil, name));
  // Without the limit this takes longer than the age of the universe; generous bound for busy machines.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_TRUE(regexFindsMatch(evil, "xxxxy"));
}

TEST(RegexCache, AQueryGivesUpOnAPatternThatKeepsTimingOut) {
  TempDir dir;
  SQLiteDB db(dir.file("t.sqlite"));
  db.exec("CREATE TABLE n(name)");
  db.transaction([&] {
    db.run("INSERT INTO n VALUES('xxy')");  // Matches at once, before any time-out.
    for (int i = 0; i < 3000; ++i) db.run("INSERT INTO n VALUES(?)", {std::string(60, 'x')});
    db.run("INSERT INTO n VALUES('xxxy')");  // Would match, but comes after the pattern was given up.
  });
  auto start = std::chrono::steady_clock::now();
  auto hits = db.query("SELECT name FROM n WHERE name REGEXP ? ORDER BY rowid", {"(x+x+)+y"},
                       [](const Statement& r) { return r.text(0); });
  EXPECT_EQ(hits, std::vector<std::string>{"xxy"});
  // 3000 time-outs at a few milliseconds each would take many seconds; a generous bound for busy machines.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
  // The budget belongs to one statement: the next query starts afresh.
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM n WHERE rowid=1 AND name REGEXP ?", {"(x+x+)+y"}), 1);
  // A pattern taken from a column changes from row to row, and each row is matched with its own.
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM n WHERE 'xxy' REGEXP name"), 1);
  EXPECT_EQ(db.scalarInt("SELECT count(*) FROM n WHERE name REGEXP name"), 3002);
}

TEST(RegexCache, SharedAcrossThreads) {
  TempDir dir;
  {
    SQLiteDB db(dir.file("t.sqlite"));
    db.exec("CREATE TABLE n(name)");
    db.transaction([&] {
      for (int i = 0; i < 2000; ++i) db.run("INSERT INTO n VALUES(?)", {"file" + std::to_string(i) + ".JPG"});
    });
  }
  std::vector<std::thread> threads;
  std::vector<int64_t> counts(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      SQLiteDB db(dir.file("t.sqlite"));
      for (int k = 0; k < 5; ++k)
        counts[t] += db.scalarInt("SELECT count(*) FROM n WHERE name REGEXP ?", {"^file1\\d*\\.jpg$"});
    });
  }
  for (auto& th : threads) th.join();
  for (int64_t c : counts) EXPECT_EQ(c, 5 * 1111);  // file1, file10-19, file100-199, file1000-1999
}

}  // namespace
}  // namespace orrelin
