#include <array>
#include <limits>
#include <set>

#include <nlohmann/json.hpp>

#include "model/json_floats.h"
#include "model/record_fields.h"
#include "model/show_json.h"

namespace velgrove {
namespace {

using Json = nlohmann::json;

constexpr std::size_t LongestText = std::numeric_limits<std::uint16_t>::max();
constexpr std::size_t MostItems = std::numeric_limits<std::int16_t>::max();

[[noreturn]] void fail(const std::string& path, const std::string& what) {
  throw RunTimeError(Fault::File, (path.empty() ? "the show" : path) + ": " + what);
}

/// "a number", "an array": what stands in place of what is wanted.
std::string kindOf(const Json& value) {
  const char* const article = value.is_null() ? "" : value.is_structured() ? "an " : "a ";
  return std::string(article) + value.type_name();
}

[[noreturn]] void wrongType(const std::string& path, const char* wanted, const Json& value) {
  fail(path, std::string(wanted) + " is wanted, here is " + kindOf(value));
}

std::string element(const std::string& path, std::size_t index) {
  return path + "[" + std::to_string(index) + "]";
}

template <std::integral Integer>
Integer integerOf(const Json& value, const std::string& path) {
  using Limits = std::numeric_limits<Integer>;
  if (!value.is_number()) wrongType(path, "a whole number", value);
  if (value.is_number_float()) fail(path, value.dump() + " is no whole number");
  const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= std::uint64_t{Limits::max()}
                                               : value.get<std::int64_t>() >= std::int64_t{Limits::min()};
  if (!fits)
    fail(path, value.dump() + " is outside " + std::to_string(Limits::min()) + " to " +
                   std::to_string(Limits::max()));
  return value.get<Integer>();
}

template <std::floating_point Float>
Float floatOf(const Json& value, const std::string& path) {
  if (value.is_string()) {
    if (const auto special = json_floats::fromSpecial<Float>(value.get_ref<const std::string&>()))
      return *special;
    fail(path, value.dump() + " is no number");
  }
  if (!value.is_number()) wrongType(path, "a number", value);
  const auto number = static_cast<Float>(value.get<double>());
  if (!std::isfinite(number))
    fail(path, value.dump() + " doesn't fit " + std::to_string(8 * sizeof(Float)) + " bits");
  return number;
}

const std::string& textOf(const Json& value, const std::string& path) {
  if (!value.is_string()) wrongType(path, "a text", value);
  const auto& text = value.get_ref<const std::string&>();
  for (std::string_view rest = text; !rest.empty();) {
    const auto character = firstCharacter(rest);
    if (!codePageByte(character.code))
      fail(path, "a show file has no character \"" + std::string(rest.substr(0, character.bytes)) + "\"");
    rest.remove_prefix(character.bytes);
  }
  return text;
}

/// Fills a record from an object. Every key must be used and every field be there; only counts may be
/// missing.
class JsonReader {
 public:
  template <class Record>
  static void record(Record& record, const Json& object, const std::string& path) {
    if (!object.is_object()) wrongType(path, "an object", object);
    JsonReader reader(object, path);
    RecordFields::fields(record, reader);
    if constexpr (RecordWithChildren<Record>) RecordFields::children(record, reader);
    if constexpr (std::same_as<Record, clsProject>) RecordFields::inputs(record, reader);
    reader.refuseUnused();
    if constexpr (RecordWithChildren<Record>) RecordFields::recount(record);
  }

  void field(const char* name, std::string& text) {
    const auto& value = textOf(at(name), path(name));
    const auto length = characterCount(value);
    if (length > LongestText)
      fail(path(name),
           std::to_string(length) + " characters; a show file holds " + std::to_string(LongestText));
    text = value;
  }
  void field(const char* name, std::optional<std::string>& text) {
    if (at(name).is_null()) return text.reset();
    field(name, text.emplace());
  }
  template <std::size_t Length>
  void field(const char* name, FixedText<Length>& text) {
    const auto& value = textOf(at(name), path(name));
    const auto length = characterCount(value);
    if (length > Length)
      fail(path(name), std::to_string(length) + " characters; a show file holds " + std::to_string(Length));
    text = value;
  }
  void field(const char* name, std::integral auto& value) {
    value = integerOf<std::remove_reference_t<decltype(value)>>(at(name), path(name));
  }
  void field(const char* name, std::floating_point auto& value) {
    value = floatOf<std::remove_reference_t<decltype(value)>>(at(name), path(name));
  }
  template <std::size_t Length>
  void field(const char* name, std::array<std::uint8_t, Length>& bytes) {
    const Json& values = array(name);
    if (values.size() != Length)
      fail(path(name), std::to_string(values.size()) + " numbers; it has " + std::to_string(Length));
    for (std::size_t index = 0; index < Length; ++index)
      bytes[index] = integerOf<std::uint8_t>(values[index], element(path(name), index));
  }
  void count(const char* name, std::int16_t) { m_used.insert(name); }
  template <class Items>
  void children(const char* name, const char*, const char*, std::int16_t, Items& items) {
    const Json& values = array(name);
    if (values.size() > MostItems)
      fail(path(name),
           std::to_string(values.size()) + " items; a show file holds " + std::to_string(MostItems));
    for (std::size_t index = 0; index < values.size(); ++index) {
      auto item = std::make_shared<typename Items::Ref::element_type>();
      record(*item, values[index], element(path(name), index));
      items.add(std::move(item));
    }
  }

 private:
  JsonReader(const Json& object, const std::string& path) : m_object(object), m_path(path) {}

  [[nodiscard]] std::string path(const std::string& name) const {
    return m_path.empty() ? name : m_path + "." + name;
  }
  const Json& at(const char* name) {
    const auto found = m_object.find(name);
    if (found == m_object.end()) fail(path(name), "is missing");
    m_used.insert(name);
    return *found;
  }
  const Json& array(const char* name) {
    const Json& values = at(name);
    if (!values.is_array()) wrongType(path(name), "an array", values);
    return values;
  }
  void refuseUnused() const {
    for (const auto& [key, value] : m_object.items())
      if (m_used.find(key) == m_used.end()) fail(path(key), "no such field");
  }

  const Json& m_object;
  const std::string& m_path;
  std::set<std::string, std::less<>> m_used;
};

/// The library's words without its own marks in front: "line 3, column 5: ...".
std::string syntaxError(std::string_view words) {
  const auto line = words.find("line ");
  if (line != std::string_view::npos) return std::string(words.substr(line));
  const auto mark = words.find("] ");
  return std::string(mark != std::string_view::npos ? words.substr(mark + 2) : words);
}

}  // namespace

std::shared_ptr<clsProject> showFromJson(std::string_view json) {
  Json object;
  try {
    object = Json::parse(json);
  } catch (const Json::exception& error) {
    throw RunTimeError(Fault::File, printable(syntaxError(error.what())));
  }
  auto project = std::make_shared<clsProject>();
  JsonReader::record(*project, object, "");
  return project;
}

}  // namespace velgrove
