// catalog.xml of the export for Claude read back by a real XML parser (Qt's), over names that hold every
// kind of trouble: markup characters, control characters, bytes that are not UTF-8, emoji and accents.
#include <QString>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <map>

#include "exchange/claude_fixture.h"

namespace orrelin {
namespace {

using testing::ClaudeExportTest;
using testing::readFile;

// What a conforming parser gives back for `text` written through xmlEscape: the characters XML cannot
// carry dropped, and in an attribute each line break or tab read as a blank (attribute normalization).
std::string expectedBack(const std::string& text, bool attribute) {
  QString in = QString::fromStdString(text), out;
  in.replace("\r\n", "\n").replace('\r', '\n');
  for (QChar c : in) {
    if ((c.unicode() < 32 && c != '\t' && c != '\n') || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF)
      continue;
    out += attribute && (c == '\t' || c == '\n') ? QChar(' ') : c;
  }
  return out.toStdString();
}

struct ParsedItem {
  std::string element;
  std::map<std::string, std::string> attributes;
  std::vector<std::string> tags;
  std::map<std::string, std::string> meta;
};

// Parses the whole document; fails the test on the first error of the parser.
std::vector<ParsedItem> parse(const std::string& xml, std::map<std::string, std::string>& catalogAttributes) {
  QXmlStreamReader reader(QByteArray::fromStdString(xml));
  std::vector<ParsedItem> items;
  std::string metaKey;
  while (!reader.atEnd()) {
    QXmlStreamReader::TokenType token = reader.readNext();
    if (token != QXmlStreamReader::StartElement) continue;
    const std::string name = reader.name().toString().toStdString();
    std::map<std::string, std::string> attributes;
    for (const QXmlStreamAttribute& a : reader.attributes())
      attributes[a.name().toString().toStdString()] = a.value().toString().toStdString();
    if (name == "catalog") {
      catalogAttributes = attributes;
    } else if (name == "file" || name == "folder") {
      items.push_back({name, attributes, {}, {}});
    } else if (name == "tag") {
      items.back().tags.push_back(reader.readElementText().toStdString());
    } else if (name == "meta") {
      items.back().meta[attributes["key"]] = reader.readElementText().toStdString();
    }
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << " at line " << reader.lineNumber()
                                  << ", column " << reader.columnNumber();
  return items;
}

TEST_F(ClaudeExportTest, CatalogXmlIsWellFormedWhateverTheNamesHold) {
  const std::vector<std::string> names = {
      "ctl\x01\x1f\x7f name.txt",
      "amp & <lt> \"q\" 'a' >.txt",
      "bad \xff\xfe name.txt",  // Not UTF-8: stored through the reversible name mapping.
      "emoji \U0001F3B5\U0001F1FA\U0001F1F8\U0001F468\u200D\U0001F469\u200D\U0001F467.mp3",
      "combining e\u0301 a\u0308 \u0915\u094D\u0937.txt",
      "line\nbreak\r\ttab\r\ncrlf.txt",
      "nonchar \uFFFF \uFFFE.txt",
      "]]> --> <!-- &amp; .txt",
  };
  for (const std::string& name : names) put("dir & <x>/" + name, 3);
  Catalog c = scanTree();

  // Tags and metadata with the same trouble, and a catalog name with it too.
  CatalogDB store(dbPath);
  store.renameCatalog(c.id, "Drive \"<&>\" \x07'\t");
  store.db().run("UPDATE files SET tags=?, meta=? WHERE catalog_id=? AND is_dir=0",
                 {std::string("a&b, <c>, \x02x\xef\xbf\xbf, \U0001F3B5"),
                  std::string(R"({"Key<&>\"":"V\"'\u0003 ]]>","\u00c9t\u00e9":"x\r\ny"})"), c.id});
  c = *store.catalog(c.id);
  std::vector<FileRecord> rows = store.allFiles(c.id);
  ASSERT_EQ(rows.size(), names.size() + 1);

  std::vector<std::filesystem::path> files = exportBundle(c);
  std::map<std::string, std::string> catalogAttributes;
  std::vector<ParsedItem> items = parse(readFile(files[1]), catalogAttributes);
  EXPECT_EQ(catalogAttributes["name"], expectedBack(c.name, true));
  ASSERT_EQ(items.size(), rows.size());
  for (size_t i = 0; i < rows.size(); ++i) {
    const FileRecord& f = rows[i];
    const ParsedItem& item = items[i];
    EXPECT_EQ(item.element, f.isDir ? "folder" : "file");
    EXPECT_EQ(item.attributes.at("path"), expectedBack(f.path, true)) << f.path;
    EXPECT_EQ(item.attributes.at("name"), expectedBack(f.name, true)) << f.path;
    EXPECT_EQ(item.attributes.at("size"), std::to_string(f.size));
    ASSERT_EQ(item.tags.size(), f.tags.size()) << f.path;
    for (size_t t = 0; t < f.tags.size(); ++t) EXPECT_EQ(item.tags[t], expectedBack(f.tags[t], false));
    std::map<std::string, std::string> meta;
    for (const auto& [key, value] : f.meta) meta[expectedBack(key, true)] = expectedBack(value, false);
    EXPECT_EQ(item.meta, meta) << f.path;
  }
  // The text kept its markup characters: they were escaped, not lost.
  EXPECT_EQ(items.back().tags.size(), 4u);
  EXPECT_EQ(items.back().tags[1], "<c>");
}

TEST_F(ClaudeExportTest, XmlEscapeKeepsTextAndDropsOnlyWhatXmlCannotHold) {
  EXPECT_EQ(ClaudeExporter::xmlEscape("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e&apos;f");
  EXPECT_EQ(ClaudeExporter::xmlEscape("t\tl\nc\r\x01\x1f\x7f"), "t\tl\nc\r\x7f");
  EXPECT_EQ(ClaudeExporter::xmlEscape("\u00E9\U0001F3B5\uFFFD"), "\u00E9\U0001F3B5\uFFFD");
  EXPECT_EQ(ClaudeExporter::xmlEscape("x\uFFFEy\uFFFFz"), "xyz");
  // Bytes that are not UTF-8 (a stray continuation, a cut-off sequence, an overlong form) become U+FFFD.
  EXPECT_EQ(ClaudeExporter::xmlEscape("a\x80z"), "a\uFFFDz");
  EXPECT_EQ(ClaudeExporter::xmlEscape("a\xe2\x82"), "a\uFFFD\uFFFD");
  EXPECT_EQ(ClaudeExporter::xmlEscape("\xc0\xaf"), "\uFFFD\uFFFD");
  // The result is always a well-formed attribute value, whatever went in.
  std::string every;
  for (int b = 1; b < 256; ++b) every += static_cast<char>(b);
  std::string doc =
      "<r a=\"" + ClaudeExporter::xmlEscape(every) + "\">" + ClaudeExporter::xmlEscape(every) + "</r>";
  QXmlStreamReader reader(QByteArray::fromStdString(doc));
  while (!reader.atEnd()) reader.readNext();
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
}

}  // namespace
}  // namespace orrelin
