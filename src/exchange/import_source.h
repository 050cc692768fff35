// An exchange file read in pieces, as often as needed, without ever holding it whole; and the CSV dialect
// read incrementally from such pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orrelin::Exporter {

// One open exchange file. The importers read it twice: once to check it, once to take it in.
class ImportSource {
 public:
  // Opens `path`. Throws ExportError naming the file when it cannot be opened.
  explicit ImportSource(std::filesystem::path path);
  ~ImportSource();
  ImportSource(const ImportSource&) = delete;
  ImportSource& operator=(const ImportSource&) = delete;

  // The next piece of the file (at most 1 MiB), empty at its end. Throws ExportError naming the file when
  // it cannot be read (a folder, an I/O error).
  std::string_view read();
  // Starts again from the first byte.
  void rewind();

  const std::filesystem::path& path() const { return m_path; }

  // The bytes from the current position to the end, one at a time, for a parser that takes iterators.
  class Bytes {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Bytes() = default;  // The end.
    explicit Bytes(ImportSource* source) : m_source(source) {}
    const char& operator*() const { return m_source->m_piece[m_source->m_at]; }
    Bytes& operator++() {
      ++m_source->m_at;
      return *this;
    }
    void operator++(int) { ++*this; }
    // Only comparisons with the end are meaningful; they read on when the piece in hand is used up.
    bool operator==(const Bytes& other) const { return atEnd() == other.atEnd(); }

   private:
    bool atEnd() const;
    ImportSource* m_source = nullptr;
  };
  Bytes begin() { return Bytes(this); }
  static Bytes end() { return Bytes(); }

 private:
  [[noreturn]] void fail(int error) const;

  std::filesystem::path m_path;
  int m_fd = -1;
  std::vector<char> m_buffer;
  std::string_view m_piece;  // What the last read() gave; Bytes walks through it.
  size_t m_at = 0;
};

// Splits CSV text given in consecutive pieces into rows, exactly as parseCSV splits the whole text: a
// piece may end anywhere, inside a field, a quoted field or a doubled quote.
class CSVReader {
 public:
  // Reads `text` on from where the last piece ended; calls `row(fields)` for each row completed in it.
  // The fields are valid only during the call.
  template <class RowFn>
  void feed(std::string_view text, RowFn&& row);
  // Closes a row still open (unless both it and its field are empty) and passes it to `row`.
  template <class RowFn>
  void finish(RowFn&& row);

 private:
  void endField();
  std::span<std::string> fields() { return {m_fields.data(), m_count}; }

  enum class State { outside, quoted, quoteInQuoted };
  State m_state = State::outside;
  std::string m_field;
  std::vector<std::string> m_fields;  // The first m_count are the row so far; the rest keep their memory.
  size_t m_count = 0;
};

// Checks UTF-8 text given in consecutive pieces, which may split a character.
class UTF8Check {
 public:
  void feed(std::string_view text);
  // True when everything fed so far, taken as one text, is valid UTF-8 and ends with a whole character.
  bool valid() const { return m_valid && m_carry.empty(); }
  // True once a piece held something that is no UTF-8, whatever follows.
  bool failed() const { return !m_valid; }

 private:
  bool m_valid = true;
  std::string m_carry;  // The start of a character that the last piece cut off.
};

template <class RowFn>
void CSVReader::feed(std::string_view text, RowFn&& row) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p < end) {
    switch (m_state) {
      case State::quoteInQuoted:
        if (*p == '"') {  // A doubled quote: one quote, still inside.
          m_field += '"';
          ++p;
          m_state = State::quoted;
        } else {
          m_state = State::outside;  // The quotes ended; this character is read as outside them.
        }
        break;
      case State::quoted: {
        const char* quote = static_cast<const char*>(std::memchr(p, '"', static_cast<size_t>(end - p)));
        const char* stop = quote ? quote : end;
        m_field.append(p, stop);
        p = stop;
        if (quote) {
          ++p;
          m_state = State::quoteInQuoted;
        }
        break;
      }
      case State::outside: {
        const char* start = p;
        while (p < end && *p != '"' && *p != ',' && *p != '\n' && *p != '\r') ++p;
        m_field.append(start, p);
        if (p == end) break;
        const char c = *p++;
        if (c == '"') {
          m_state = State::quoted;
        } else if (c == ',') {
          endField();
        } else if (c == '\n') {
          endField();
          row(fields());
          m_count = 0;
        }  // A carriage return outside quotes is dropped.
        break;
      }
    }
  }
}

template <class RowFn>
void CSVReader::finish(RowFn&& row) {
  m_state = State::outside;  // A quote at the very end of the text ends the quotes.
  if (!m_field.empty() || m_count > 0) {
    endField();
    row(fields());
  }
  m_count = 0;
  m_field.clear();
}

}  // namespace orrelin::Exporter
