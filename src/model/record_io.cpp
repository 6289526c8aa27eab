#include "model/record_io.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <limits>

#include "controls/faults.h"

namespace velgrove {
namespace {

constexpr std::uint16_t EmptyTag = 0;
constexpr std::uint16_t StringTag = 8;
constexpr std::size_t LongestText = std::numeric_limits<std::uint16_t>::max();

template <std::unsigned_integral Unsigned>
void appendNumber(std::string& bytes, Unsigned value) {
  for (std::size_t byte = 0; byte < sizeof value; ++byte)
    bytes.push_back(static_cast<char>(static_cast<std::uint8_t>(value >> (8 * byte))));
}

std::string plural(int number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

}  // namespace

std::string RecordPlace::of(const char* field) const {
  std::string text;
  for (const Step& step : m_steps)
    text.append(step.noun).append(" ").append(std::to_string(step.number)).append(", ");
  return text + field;
}

void RecordWriter::field(const char*, std::uint8_t value) {
  appendNumber(m_bytes, value);
}

void RecordWriter::field(const char*, std::int16_t value) {
  appendNumber(m_bytes, static_cast<std::uint16_t>(value));
}

void RecordWriter::field(const char*, std::int32_t value) {
  appendNumber(m_bytes, static_cast<std::uint32_t>(value));
}

void RecordWriter::field(const char*, float value) {
  appendNumber(m_bytes, std::bit_cast<std::uint32_t>(value));
}

void RecordWriter::field(const char*, double value) {
  appendNumber(m_bytes, std::bit_cast<std::uint64_t>(value));
}

void RecordWriter::field(const char* name, const std::string& text) {
  const std::string bytes = codePageFromUtf8(text);
  if (bytes.size() > LongestText)
    throw RunTimeError(Fault::Overflow, m_place.of(name) + ": a text of " + std::to_string(bytes.size()) +
                                            " characters; a show file holds " + std::to_string(LongestText));
  appendNumber(m_bytes, static_cast<std::uint16_t>(bytes.size()));
  m_bytes += bytes;
}

void RecordWriter::field(const char* name, const std::optional<std::string>& text) {
  appendNumber(m_bytes, text ? StringTag : EmptyTag);
  if (text) field(name, *text);
}

template <class Unsigned>
Unsigned RecordReader::takeNumber() {
  Unsigned value = 0;
  const std::string_view bytes = take(sizeof value);
  for (std::size_t byte = 0; byte < sizeof value; ++byte)
    value = static_cast<Unsigned>(
        value | static_cast<Unsigned>(Unsigned{static_cast<std::uint8_t>(bytes[byte])} << (8 * byte)));
  return value;
}

void RecordReader::field(const char* name, std::uint8_t& value) {
  if (has(name, sizeof value)) value = takeNumber<std::uint8_t>();
}

void RecordReader::field(const char* name, std::int16_t& value) {
  if (has(name, sizeof value)) value = static_cast<std::int16_t>(takeNumber<std::uint16_t>());
}

void RecordReader::field(const char* name, std::int32_t& value) {
  if (has(name, sizeof value)) value = static_cast<std::int32_t>(takeNumber<std::uint32_t>());
}

void RecordReader::field(const char* name, float& value) {
  if (has(name, sizeof value)) value = std::bit_cast<float>(takeNumber<std::uint32_t>());
}

void RecordReader::field(const char* name, double& value) {
  if (has(name, sizeof value)) value = std::bit_cast<double>(takeNumber<std::uint64_t>());
}

void RecordReader::field(const char* name, std::string& text) {
  text.clear();
  const std::size_t begin = m_at;
  if (!has(name, sizeof(std::uint16_t))) return;
  const std::size_t length = takeNumber<std::uint16_t>();
  if (m_bytes.size() - m_at < length) return cut(name, begin);
  text = utf8FromCodePage(take(length));
}

void RecordReader::field(const char* name, std::optional<std::string>& text) {
  text.reset();
  const std::size_t begin = m_at;
  if (!has(name, sizeof(std::uint16_t))) return;
  const auto tag = takeNumber<std::uint16_t>();
  if (tag == StringTag) {
    std::string value;
    field(name, value);
    if (!m_ended) text = std::move(value);
  } else if (tag != EmptyTag) {
    m_faults.push_back({begin, m_place.of(name),
                        "its tag " + std::to_string(tag) + " isn't known, so nothing behind it can be read"});
    m_ended = true;
    end();
  }
}

void RecordReader::count(const char* name, std::int16_t& value) {
  const std::size_t begin = m_at;
  field(name, value);
  if (value < 0 && !m_refusal)
    m_refusal =
        FileFault{begin, m_place.of(name), "a count of " + std::to_string(value) + ": this is no show"};
}

bool RecordReader::has(const char* name, std::size_t count) {
  if (m_bytes.size() - m_at >= count) return true;
  cut(name, m_at);
  return false;
}

std::string_view RecordReader::take(std::size_t count) {
  const std::string_view bytes = m_bytes.substr(m_at, count);
  m_at += count;
  return bytes;
}

void RecordReader::readBytes(const char* name, std::uint8_t* bytes, std::size_t count) {
  const std::size_t begin = m_at;
  const std::string_view there = take(std::min(count, m_bytes.size() - m_at));
  std::copy(there.begin(), there.end(), bytes);
  if (there.size() < count) cut(name, begin);
}

void RecordReader::cut(const char* name, std::size_t begin) {
  const bool before = begin == m_bytes.size();
  end();
  if (m_ended) return;
  m_ended = true;
  m_faults.push_back({begin, m_place.of(name),
                      before ? "the file ends before this field" : "the file ends inside this field"});
}

void RecordReader::missing(const char* countName, const char* noun, int counted, int read) {
  const std::string there = read == 0 ? "none is" : read == 1 ? "1 is" : std::to_string(read) + " are";
  m_faults.push_back(
      {m_bytes.size(), m_place.of(countName), "counts " + plural(counted, noun) + ", " + there + " there"});
}

}  // namespace velgrove
