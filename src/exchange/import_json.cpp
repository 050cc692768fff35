// The JSON catalog export as parser events. A key that is absent or of another type takes its default, and
// when an object repeats a key the last one counts, as it would in a parsed tree of the document.
#include "exchange/import_json.h"

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <set>

#include <nlohmann/json.hpp>

#include "organize/export_error.h"
#include "store/fmt.h"
#include "store/records.h"
#include "store/safe_int.h"

namespace orrelin::Exporter {

namespace {

using json = nlohmann::json;

constexpr const char* kDefaultCatalogName = "Imported Catalog";
constexpr const char* kChangedText = "The file changed while it was being imported.";

// One scalar as the parser gave it: enough to answer what a parsed tree's value would.
struct Value {
  enum class Type : uint8_t { absent, other, text, boolean, integer, unsignedInteger, floating };
  Type type = Type::absent;
  bool flag = false;
  int64_t integer = 0;
  uint64_t unsignedInteger = 0;
  double floating = 0;
  std::string text;

  bool isNumber() const {
    return type == Type::integer || type == Type::unsignedInteger || type == Type::floating;
  }
  double asDouble() const {
    return type == Type::integer           ? static_cast<double>(integer)
           : type == Type::unsignedInteger ? static_cast<double>(unsignedInteger)
                                           : floating;
  }
};

std::string textOr(Value& v, std::string fallback) {
  return v.type == Value::Type::text ? std::move(v.text) : fallback;
}

bool boolOr(const Value& v, bool fallback) { return v.type == Value::Type::boolean ? v.flag : fallback; }

// Any number, truncated to a 64-bit integer; one out of that range counts as absent.
std::optional<int64_t> anyInteger(const Value& v) {
  switch (v.type) {
    case Value::Type::integer:
      return v.integer;
    case Value::Type::unsignedInteger:
      if (v.unsignedInteger <= static_cast<uint64_t>(std::numeric_limits<int64_t>::max()))
        return static_cast<int64_t>(v.unsignedInteger);
      return std::nullopt;
    case Value::Type::floating: {
      constexpr int64_t kOutOfRange = std::numeric_limits<int64_t>::min();
      int64_t n = SafeInt::from(v.floating, kOutOfRange);
      return n == kOutOfRange ? std::nullopt : std::optional<int64_t>(n);
    }
    default:
      return std::nullopt;
  }
}

// An integer, or a number with no fraction; anything else counts as absent.
std::optional<int64_t> wholeInteger(const Value& v) {
  if (v.type == Value::Type::floating && std::trunc(v.floating) != v.floating) return std::nullopt;
  return anyInteger(v);
}

double numberOr(const Value& v, double fallback) {
  if (!v.isNumber()) return fallback;
  double d = v.asDouble();
  return std::isfinite(d) ? d : fallback;
}

OptionalDate dateOf(const Value& v) {
  return v.type == Value::Type::text ? Fmt::parseIso(v.text) : std::nullopt;
}

// The keys read, of the root, of a catalog and of a file object.
enum Key : uint8_t {
  kNone,
  kCatalogs,
  kName,
  kRootPath,
  kVolumeName,
  kVolumeUUID,
  kFormat,
  kCapacity,
  kFree,
  kNetwork,
  kRemovable,
  kFolderCatalog,
  kNotes,
  kItems,
  kPath,
  kIsFolder,
  kSize,
  kKind,
  kUTI,
  kModified,
  kCreated,
  kTags,
  kLabel,
  kHidden,
  kDuration,
  kWidth,
  kHeight,
  kSHA256,
  kMetadata,
  kKeyCount
};

struct KeyName {
  std::string_view text;
  Key key;
};

constexpr KeyName kCatalogKeys[] = {{"name", kName},         {"rootPath", kRootPath},
                                    {"volumeName", kVolumeName}, {"volumeUUID", kVolumeUUID},
                                    {"format", kFormat},     {"capacity", kCapacity},
                                    {"free", kFree},         {"network", kNetwork},
                                    {"removable", kRemovable}, {"folderCatalog", kFolderCatalog},
                                    {"notes", kNotes},       {"items", kItems}};
constexpr KeyName kItemKeys[] = {{"path", kPath},         {"name", kName},         {"isFolder", kIsFolder},
                                 {"size", kSize},         {"kind", kKind},         {"uti", kUTI},
                                 {"modified", kModified}, {"created", kCreated},   {"tags", kTags},
                                 {"label", kLabel},       {"hidden", kHidden},     {"duration", kDuration},
                                 {"width", kWidth},       {"height", kHeight},     {"sha256", kSHA256},
                                 {"metadata", kMetadata}};

template <size_t N>
Key lookUp(const KeyName (&names)[N], std::string_view text) {
  for (const KeyName& k : names)
    if (k.text == text) return k.key;
  return kNone;
}

// The receiver of nlohmann's parser events. Without `each` it only follows the document's structure and
// fills an outline; with it, it makes the catalogs of the outline's list and passes each one on.
class ExportEvents {
 public:
  ExportEvents(const JSONOutline* outline, const std::function<void(JSONCatalog&)>* each)
      : m_outline(outline), m_each(each) {}

  bool null() { return scalar(Value::Type::other); }
  bool boolean(bool b) {
    Value* v = slot(Value::Type::boolean);
    if (v) v->flag = b;
    return true;
  }
  bool number_integer(json::number_integer_t n) {
    Value* v = slot(Value::Type::integer);
    if (v) v->integer = n;
    return true;
  }
  bool number_unsigned(json::number_unsigned_t n) {
    Value* v = slot(Value::Type::unsignedInteger);
    if (v) v->unsignedInteger = n;
    return true;
  }
  bool number_float(json::number_float_t n, const std::string&) {
    Value* v = slot(Value::Type::floating);
    if (v) v->floating = n;
    return true;
  }
  bool string(std::string& text) {
    if (!m_frames.empty() && m_frames.back() == Frame::tags) {
      if (m_building && m_tagsList) m_tags.push_back(text);
      return true;
    }
    if (!m_frames.empty() && m_frames.back() == Frame::metadata) {
      if (m_building) {
        m_badMetaKeys.erase(m_metaKey);
        m_meta.insert_or_assign(m_metaKey, text);
      }
      return true;
    }
    Value* v = slot(Value::Type::text);
    if (v) v->text.assign(text);
    return true;
  }
  bool binary(json::binary_t&) { return scalar(Value::Type::other); }

  bool key(std::string& text) {
    switch (m_frames.back()) {
      case Frame::root:
        m_key = text == "catalogs" ? kCatalogs : kNone;
        break;
      case Frame::catalog:
        m_key = lookUp(kCatalogKeys, text);
        break;
      case Frame::item:
        m_key = lookUp(kItemKeys, text);
        break;
      case Frame::metadata:
        if (m_building) m_metaKey.assign(text);
        break;
      default:
        break;
    }
    return true;
  }

  bool start_object(size_t) {
    m_frames.push_back(opened(/*object=*/true));
    return true;
  }
  bool start_array(size_t) {
    m_frames.push_back(opened(/*object=*/false));
    return true;
  }
  bool end_object() { return closed(); }
  bool end_array() { return closed(); }

  template <class Exception>
  bool parse_error(size_t, const std::string&, const Exception& e) {
    m_error = e.what();
    return false;
  }

  const std::string& error() const { return m_error; }

  JSONOutline outline() const {
    JSONOutline o;
    o.isExport = m_rootIsObject && m_lists > 0 && m_catalogsIsList && m_allObjects;
    o.list = m_lists;
    o.itemCounts = m_counts;
    return o;
  }
  // The catalogs passed on so far.
  size_t catalogsMade() const { return m_made; }

 private:
  enum class Frame : uint8_t { root, catalogs, catalog, items, item, tags, metadata, skip };

  // A scalar value where the structure may ask for an object or list: breaks what must be all of one type.
  bool scalar(Value::Type type) {
    slot(type);
    return true;
  }

  // Notes a scalar of `type` in its place, and returns the slot to fill with its value when it is one of
  // the keys read (and the catalog is being made), else null.
  Value* slot(Value::Type type) {
    if (m_frames.empty()) return nullptr;  // A root that is no object.
    switch (m_frames.back()) {
      case Frame::root:
        if (m_key == kCatalogs) beginCatalogs(/*isList=*/false);
        return nullptr;
      case Frame::catalogs:
        m_allObjects = false;
        return nullptr;
      case Frame::catalog:
        if (m_key == kItems) {
          dropItems();
          return nullptr;
        }
        return m_key != kNone && m_building ? fill(m_catalogValues[m_key], type) : nullptr;
      case Frame::items:
        dropItems();
        return nullptr;
      case Frame::item:
        if (m_key == kTags) {
          m_tagsList = false;
          return nullptr;
        }
        if (m_key == kMetadata) {
          m_metaObject = false;
          return nullptr;
        }
        return m_key != kNone && m_building ? fill(m_itemValues[m_key], type) : nullptr;
      case Frame::tags:
        m_tagsList = false;  // Not text, which string() takes.
        return nullptr;
      case Frame::metadata:
        if (m_building) {
          m_meta.erase(m_metaKey);
          m_badMetaKeys.insert(m_metaKey);
        }
        return nullptr;
      case Frame::skip:
        return nullptr;
    }
    return nullptr;
  }

  static Value* fill(Value& v, Value::Type type) {
    v.type = type;
    return &v;
  }

  // The frame for an object or list that starts now, after the bookkeeping its place asks for.
  Frame opened(bool object) {
    if (m_frames.empty()) {
      m_rootIsObject = object;
      return object ? Frame::root : Frame::skip;
    }
    switch (m_frames.back()) {
      case Frame::root:
        if (m_key != kCatalogs) return Frame::skip;
        beginCatalogs(!object);
        return object ? Frame::skip : Frame::catalogs;
      case Frame::catalogs:
        if (!object) {
          m_allObjects = false;
          return Frame::skip;
        }
        beginCatalog();
        return Frame::catalog;
      case Frame::catalog:
        if (m_key == kItems) {
          if (object) {
            dropItems();
            return Frame::skip;
          }
          beginItems();
          return Frame::items;
        }
        if (m_key != kNone) m_catalogValues[m_key].type = Value::Type::other;
        return Frame::skip;
      case Frame::items:
        if (!object) {
          dropItems();
          return Frame::skip;
        }
        beginItem();
        return Frame::item;
      case Frame::item:
        if (m_key == kTags) {
          m_tagsList = !object;
          m_tags.clear();
          return object ? Frame::skip : Frame::tags;
        }
        if (m_key == kMetadata) {
          m_metaObject = object;
          m_meta.clear();
          m_badMetaKeys.clear();
          return object ? Frame::metadata : Frame::skip;
        }
        if (m_key != kNone) m_itemValues[m_key].type = Value::Type::other;
        return Frame::skip;
      case Frame::tags:
        m_tagsList = false;
        return Frame::skip;
      case Frame::metadata:
        slot(Value::Type::other);
        return Frame::skip;
      case Frame::skip:
        return Frame::skip;
    }
    return Frame::skip;
  }

  bool closed() {
    Frame done = m_frames.back();
    m_frames.pop_back();
    if (done == Frame::item) endItem();
    if (done == Frame::catalog) endCatalog();
    return true;
  }

  // A "catalogs" key of the root: the last one is the one that counts.
  void beginCatalogs(bool isList) {
    ++m_lists;
    m_catalogsIsList = isList;
    m_allObjects = true;
    m_counts.clear();
    m_catalogIndex = 0;
    m_building = m_each && m_lists == m_outline->list;
  }

  void beginCatalog() {
    for (Value& v : m_catalogValues) v.type = Value::Type::absent;
    m_itemsList = false;
    m_itemCount = 0;
    m_items.clear();
  }

  void beginItems() {
    m_itemsList = true;
    m_itemCount = 0;
    m_items.clear();
    if (m_building && m_catalogIndex < m_outline->itemCounts.size())
      m_items.reserve(m_outline->itemCounts[m_catalogIndex]);
  }

  // The catalog's "items" is no list of objects: it has none.
  void dropItems() {
    m_itemsList = false;
    m_items = {};
  }

  void beginItem() {
    for (Value& v : m_itemValues) v.type = Value::Type::absent;
    m_tagsList = false;
    m_metaObject = false;
  }

  void endItem() {
    if (!m_itemsList) return;
    ++m_itemCount;
    if (m_building) m_items.push_back(makeItem());
  }

  ImportedFile makeItem() {
    auto& v = m_itemValues;
    ImportedFile f;
    f.path = textOr(v[kPath], textOr(v[kName], ""));
    f.isDir = boolOr(v[kIsFolder], false);
    f.size = anyInteger(v[kSize]).value_or(0);
    f.kind = textOr(v[kKind], "Other");
    f.uti = textOr(v[kUTI], "");
    f.modified = dateOf(v[kModified]);
    f.created = dateOf(v[kCreated]);
    if (m_tagsList) f.tags = joinTags(m_tags);
    int64_t label = wholeInteger(v[kLabel]).value_or(0);
    f.label = label >= std::numeric_limits<int>::min() && label <= std::numeric_limits<int>::max()
                  ? static_cast<int>(label)
                  : 0;
    f.hidden = boolOr(v[kHidden], false);
    f.duration = numberOr(v[kDuration], 0);
    f.width = wholeInteger(v[kWidth]).value_or(0);
    f.height = wholeInteger(v[kHeight]).value_or(0);
    f.sha = textOr(v[kSHA256], "");
    if (m_metaObject && m_badMetaKeys.empty()) f.meta = std::move(m_meta);
    m_meta.clear();
    return f;
  }

  void endCatalog() {
    if (!m_building) {
      m_counts.push_back(m_itemsList ? m_itemCount : 0);
      return;
    }
    auto& v = m_catalogValues;
    JSONCatalog c;
    c.volume.name = textOr(v[kVolumeName], c.volume.name);
    c.volume.uuid = textOr(v[kVolumeUUID], c.volume.uuid);
    c.volume.format = textOr(v[kFormat], c.volume.format);
    c.volume.capacity = anyInteger(v[kCapacity]).value_or(c.volume.capacity);
    c.volume.free = anyInteger(v[kFree]).value_or(c.volume.free);
    c.volume.isNetwork = boolOr(v[kNetwork], c.volume.isNetwork);
    c.volume.isRemovable = boolOr(v[kRemovable], c.volume.isRemovable);
    c.name = textOr(v[kName], kDefaultCatalogName);
    c.rootPath = textOr(v[kRootPath], "");
    c.isFolder = boolOr(v[kFolderCatalog], false);
    c.notes = textOr(v[kNotes], "");
    if (m_itemsList) c.items = std::move(m_items);
    m_items = {};
    ++m_catalogIndex;
    if (m_catalogIndex > m_outline->itemCounts.size() ||
        c.items.size() != m_outline->itemCounts[m_catalogIndex - 1])
      throw ExportError(kChangedText);
    (*m_each)(c);
    ++m_made;
  }

  const JSONOutline* m_outline;
  const std::function<void(JSONCatalog&)>* m_each;
  bool m_building = false;  // Making the catalogs of the list now being read.

  std::vector<Frame> m_frames;
  Key m_key = kNone;
  std::string m_error;

  // The root and its "catalogs".
  bool m_rootIsObject = false;
  size_t m_lists = 0;  // "catalogs" keys of the root seen so far.
  bool m_catalogsIsList = false;
  bool m_allObjects = false;
  std::vector<size_t> m_counts;
  size_t m_catalogIndex = 0;
  size_t m_made = 0;

  // The catalog being read.
  std::array<Value, kKeyCount> m_catalogValues;
  bool m_itemsList = false;
  size_t m_itemCount = 0;
  std::vector<ImportedFile> m_items;

  // The file object being read.
  std::array<Value, kKeyCount> m_itemValues;
  bool m_tagsList = false;
  std::vector<std::string> m_tags;
  bool m_metaObject = false;
  std::string m_metaKey;
  std::map<std::string, std::string> m_meta;
  std::set<std::string> m_badMetaKeys;  // Keys whose last value is no text.
};

// nlohmann's messages start with "[json.exception.parse_error.101] ", which says nothing to a user.
std::string withoutExceptionTag(const std::string& what) {
  size_t end = what.rfind("] ", 40);
  return what.rfind("[json.exception.", 0) == 0 && end != std::string::npos ? what.substr(end + 2) : what;
}

// Reads the document from its start into `events`; returns the parser's error text, or nothing.
std::optional<std::string> parse(ImportSource& source, ExportEvents& events) {
  source.rewind();
  if (json::sax_parse(source.begin(), ImportSource::end(), &events)) return std::nullopt;
  return withoutExceptionTag(events.error());
}

}  // namespace

JSONOutline outlineJSONExport(ImportSource& source) {
  ExportEvents events(nullptr, nullptr);
  if (std::optional<std::string> error = parse(source, events))
    throw ExportError("The file is not valid JSON: " + *error);
  return events.outline();
}

void readJSONExport(ImportSource& source, const JSONOutline& outline,
                    const std::function<void(JSONCatalog&)>& each) {
  ExportEvents events(&outline, &each);
  if (parse(source, events) || events.catalogsMade() != outline.itemCounts.size())
    throw ExportError(kChangedText);
}

}  // namespace orrelin::Exporter
