#include <array>
#include <cmath>

#include <nlohmann/json.hpp>

#include "model/json_floats.h"
#include "model/record_fields.h"
#include "model/show_json.h"

namespace velgrove {
namespace {

/// Writes records as objects. Levels of channels stand sixteen to a line, so that a look can be read.
class JsonWriter {
 public:
  template <class Record>
  void record(Record& record) {
    open('{');
    if constexpr (RecordWithChildren<Record>) RecordFields::recount(record);
    RecordFields::fields(record, *this);
    if constexpr (RecordWithChildren<Record>) RecordFields::children(record, *this);
    if constexpr (std::same_as<Record, clsProject>) RecordFields::inputs(record, *this);
    close('}');
  }

  void field(const char* name, const std::string& text) {
    key(name);
    m_text += quoted(text);
  }
  void field(const char* name, const std::optional<std::string>& text) {
    key(name);
    m_text += text ? quoted(*text) : "null";
  }
  template <std::size_t Length>
  void field(const char* name, const FixedText<Length>& text) {
    field(name, text.str());
  }
  void field(const char* name, std::integral auto value) {
    key(name);
    m_text += std::to_string(value);
  }
  void field(const char* name, std::floating_point auto value) {
    key(name);
    m_text += std::isfinite(value) ? json_floats::number(value) : quoted(json_floats::special(value));
  }
  template <std::size_t Length>
  void field(const char* name, const std::array<std::uint8_t, Length>& bytes) {
    constexpr int InALine = 16;
    key(name);
    open('[');
    int number = 0;
    for (const auto byte : bytes) {
      if (number++ % InALine == 0)
        next();
      else
        m_text += ", ";
      m_text += std::to_string(byte);
    }
    close(']');
  }
  void count(const char* name, std::int16_t value) { field(name, value); }
  template <class Items>
  void children(const char* name, const char*, const char*, std::int16_t, Items& items) {
    key(name);
    open('[');
    for (const auto& item : items) {
      next();
      record(*item);
    }
    close(']');
  }

  [[nodiscard]] std::string take() { return std::move(m_text); }

 private:
  /// A text that came from elsewhere may not be UTF-8; what isn't becomes the replacement character.
  static std::string quoted(const std::string& text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  }
  void open(char bracket) {
    m_text += bracket;
    ++m_depth;
    m_first = true;
  }
  void close(char bracket) {
    --m_depth;
    if (!m_first) newLine();
    m_text += bracket;
    m_first = false;
  }
  void next() {
    if (!m_first) m_text += ',';
    m_first = false;
    newLine();
  }
  void key(const char* name) {
    next();
    m_text.append("\"").append(name).append("\": ");
  }
  void newLine() { m_text.append("\n").append(2 * m_depth, ' '); }

  std::string m_text;
  std::size_t m_depth = 0;
  bool m_first = true;
};

}  // namespace

std::string showToJson(clsProject& project) {
  JsonWriter writer;
  writer.record(project);
  return writer.take() + "\n";
}

}  // namespace velgrove
