#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/text.h"

namespace velgrove {

/// What is wrong at one place of a show file.
struct FileFault {
  std::size_t offset;
  std::string place;  ///< record and field: "view 1, fixture 3, Channel"
  std::string what;
};

/// Where in the tree of records a writer or reader stands.
class RecordPlace {
 public:
  /// Marks the time during which a child record is worked on. Nouns are literals.
  class Inside {
   public:
    Inside(RecordPlace& place, const char* noun, int number) : m_place(place) {
      m_place.m_steps.push_back({noun, number});
    }
    ~Inside() { m_place.m_steps.pop_back(); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

   private:
    RecordPlace& m_place;
  };

  [[nodiscard]] std::string of(const char* field) const;

 private:
  struct Step {
    const char* noun;
    int number;
  };
  std::vector<Step> m_steps;
};

/// Writes records one behind the other: little-endian, packed, texts in the code page.
class RecordWriter {
 public:
  explicit RecordWriter(std::size_t expected = 0) { m_bytes.reserve(expected); }

  void field(const char* name, std::uint8_t value);
  void field(const char* name, std::int16_t value);
  void field(const char* name, std::int32_t value);
  void field(const char* name, float value);
  void field(const char* name, double value);
  /// Fault::Overflow, naming the place, for a text whose length doesn't fit its 16 bits.
  void field(const char* name, const std::string& text);
  void field(const char* name, const std::optional<std::string>& text);
  template <std::size_t Length>
  void field(const char*, const FixedText<Length>& text) {
    m_bytes += codePageFromUtf8(text.str());
  }
  template <std::size_t Length>
  void field(const char*, const std::array<std::uint8_t, Length>& bytes) {
    m_bytes.append(bytes.begin(), bytes.end());
  }
  void count(const char* name, std::int16_t value) { field(name, value); }
  template <class Items>
  void children(const char*, const char*, const char* noun, std::int16_t, Items& items) {
    int number = 0;
    for (const auto& item : items) {
      const RecordPlace::Inside inside(m_place, noun, ++number);
      item->Save(*this);
    }
  }

  [[nodiscard]] std::string take() { return std::move(m_bytes); }

 private:
  RecordPlace m_place;
  std::string m_bytes;
};

/// Reads records as far as the bytes go. A field that the end of the file cuts stays zero or empty, byte
/// arrays keep what there is; a record that would begin past the end isn't made. What was missing stands in
/// `faults`, each thing once.
class RecordReader {
 public:
  explicit RecordReader(std::string_view bytes) : m_bytes(bytes) {}

  void field(const char* name, std::uint8_t& value);
  void field(const char* name, std::int16_t& value);
  void field(const char* name, std::int32_t& value);
  void field(const char* name, float& value);
  void field(const char* name, double& value);
  void field(const char* name, std::string& text);
  /// A tag that isn't known has a value of unknown length, so nothing behind it can be found: reading ends.
  void field(const char* name, std::optional<std::string>& text);
  template <std::size_t Length>
  void field(const char* name, FixedText<Length>& text) {
    if (has(name, Length)) text = utf8FromCodePage(take(Length));
  }
  template <std::size_t Length>
  void field(const char* name, std::array<std::uint8_t, Length>& bytes) {
    readBytes(name, bytes.data(), Length);
  }
  /// A negative count refuses the file.
  void count(const char* name, std::int16_t& value);
  template <class Items>
  void children(const char*, const char* countName, const char* noun, std::int16_t count, Items& items) {
    for (int number = 1; number <= count; ++number) {
      if (atEnd()) return missing(countName, noun, count, number - 1);
      const RecordPlace::Inside inside(m_place, noun, number);
      auto item = std::make_shared<typename Items::Ref::element_type>();
      item->restore(*this);
      items.add(std::move(item));
    }
  }

  [[nodiscard]] bool atEnd() const { return m_at == m_bytes.size(); }
  [[nodiscard]] std::size_t offset() const { return m_at; }
  [[nodiscard]] RecordPlace& place() { return m_place; }
  [[nodiscard]] const std::vector<FileFault>& faults() const { return m_faults; }
  /// Why the file is none that could be opened at all; nothing when it is.
  [[nodiscard]] const std::optional<FileFault>& refusal() const { return m_refusal; }

 private:
  [[nodiscard]] bool has(const char* name, std::size_t count);
  [[nodiscard]] std::string_view take(std::size_t count);
  template <class Unsigned>
  [[nodiscard]] Unsigned takeNumber();
  void readBytes(const char* name, std::uint8_t* bytes, std::size_t count);
  void cut(const char* name, std::size_t begin);
  void missing(const char* countName, const char* noun, int counted, int read);
  void end() { m_at = m_bytes.size(); }

  std::string_view m_bytes;
  std::size_t m_at = 0;
  bool m_ended = false;  ///< the reason why nothing more comes is in the faults
  RecordPlace m_place;
  std::vector<FileFault> m_faults;
  std::optional<FileFault> m_refusal;
};

}  // namespace velgrove
