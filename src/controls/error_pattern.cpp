#include "controls/error_pattern.h"

namespace velgrove {
namespace {

Box systemError() {
  return {.text = "Application may close, Would you like to continue?",
          .title = "SYSTEM ERROR",
          .buttons = BoxButtons::AbortRetryIgnore,
          .icon = BoxIcon::Critical};
}

}  // namespace

thread_local ErrorPattern::Tick* ErrorPattern::Tick::current = nullptr;

BoxAnswer ErrorPattern::ask(const RunTimeError& error) {
  Tick* const tick = Tick::current;
  if (tick == nullptr) return m_boxes.show(systemError());
  if (!tick->m_memory.note(error.fault())) return BoxAnswer::Ignore;
  if (tick->m_waits == Waits::ForAnswer) return m_boxes.show(systemError());
  m_boxes.post(systemError());
  return BoxAnswer::Ignore;
}

}  // namespace velgrove
