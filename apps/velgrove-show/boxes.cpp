#include "boxes.h"

#include <cinttypes>
#include <cstdio>

#include <nlohmann/json.hpp>

namespace velgrove {
namespace {

std::string quoted(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

BoxAnswer BoxLog::answer(const Box& box) {
  (void)std::fprintf(stderr, "%" PRId64 " box %s %s\n", m_ms(), quoted(box.title).c_str(),
                     quoted(box.text).c_str());
  if (++m_count >= MostBoxes) throw TooManyBoxes{};
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
