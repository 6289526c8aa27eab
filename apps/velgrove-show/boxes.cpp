#include "boxes.h"

#include <nlohmann/json.hpp>

namespace velgrove {
namespace {

std::string quoted(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

BoxAnswer BoxLog::answer(const Box& box) {
  if (!tooMany()) m_tell(std::to_string(m_ms()) + " box " + quoted(box.title) + " " + quoted(box.text));
  ++m_count;
  switch (box.buttons) {
    case BoxButtons::Ok:
      return BoxAnswer::Ok;
    case BoxButtons::YesNo:
      return BoxAnswer::Yes;
    case BoxButtons::AbortRetryIgnore:
      return BoxAnswer::Ignore;
  }
  return BoxAnswer::Ok;
}

}  // namespace velgrove
