#include "controls/face.h"

#include <algorithm>
#include <cassert>

namespace velgrove {
namespace {

/// Sets a flag for the time of a block.
class During {
 public:
  explicit During(bool& flag) : m_flag(flag), m_before(std::exchange(flag, true)) {}
  ~During() { m_flag = m_before; }
  During(const During&) = delete;
  During& operator=(const During&) = delete;

 private:
  bool& m_flag;
  bool m_before;
};

}  // namespace

Face::Face(Desk& desk, Loop loop) : m_desk(desk), m_loop(std::move(loop)) {
  m_desk.onGiven = [this] { m_loop.wake(); };
}

std::shared_ptr<void> Face::bind(Binder binder) {
  assert(here());
  auto bound = std::make_shared<Bound>(Bound{.binder = std::move(binder)});
  m_bound.emplace_back(bound);
  // The pull may hold the binder a moment longer than its widget lives.
  return {bound.get(), [bound](void*) { bound->live = false; }};
}

void Face::serve() {
  if (!m_asleep && !m_applying) runLate();
  pull();
}

void Face::pull() {
  assert(here() && !m_desk.mine());
  if (m_applying) return;
  std::erase_if(m_bound, [](const auto& weak) {
    const auto bound = weak.lock();
    return bound == nullptr || !bound->live;
  });
  std::vector<std::shared_ptr<Bound>> live;
  for (const auto& weak : m_bound)
    if (auto bound = weak.lock()) live.push_back(std::move(bound));

  m_desk.takeToCopy();
  for (const auto& bound : live) bound->changed = bound->binder.copy();
  const auto boxes = boxesToShow();
  m_desk.giveUnchanged();

  {
    const During applying(m_applying);
    for (const auto& bound : live)
      if (bound->changed && bound->live) bound->binder.apply();
  }
  showBoxes(boxes);
}

void Face::deliver(std::function<void()> action) {
  assert(here() && !m_desk.mine());
  m_late.push_back(std::move(action));
  if (m_applying) m_loop.wake();
  if (m_asleep || m_applying) return;
  runLate();
  pull();
}

/// Actions run in the order in which the operator gave them; one that waits lets those behind it run inside
/// its wait.
void Face::runLate() {
  while (!m_late.empty() && !m_desk.closing()) {
    auto action = std::move(m_late.front());
    m_late.pop_front();
    if (run(action)) continue;
    m_late.push_front(std::move(action));
    return;
  }
}

/// False when the turn isn't free.
bool Face::run(const std::function<void()>& action) {
  if (!m_desk.takeIfFree()) return false;
  try {
    act(action);
  } catch (const Closing&) {  // NOLINT(bugprone-empty-catch): the way that every wait ends
  }
  m_desk.give();
  return true;
}

void Face::until(const std::function<bool()>& condition) {
  assert(here() && m_desk.mine());
  for (;;) {
    if (m_desk.closing()) throw Closing{};
    if (condition()) return;
    m_desk.give();
    do {
      m_loop.processEvents();
    } while (!m_desk.takeIfFree());
  }
}

void Face::sleep(Milliseconds time) {
  assert(here() && m_desk.mine());
  const During asleep(m_asleep);
  m_desk.keepTurn([&] {
    const auto now = [] { return std::chrono::steady_clock::now(); };
    for (const auto end = now() + time; !m_desk.closing() && now() < end;)
      m_loop.paintEvents(std::chrono::ceil<Milliseconds>(end - now()));
  });
  if (m_desk.closing()) throw Closing{};
}

void Face::aside(const std::function<void()>& work) {
  assert(here() && m_desk.mine());
  struct Given {
    explicit Given(Desk& given) : desk(given) { desk.give(); }
    ~Given() { desk.take(); }
    Desk& desk;
  } const given(m_desk);
  work();
}

std::shared_ptr<Face::Asked> Face::ask(const Box& box, bool waitedFor) {
  assert(m_desk.mine());
  auto asked = std::make_shared<Asked>(Asked{.box = box, .waitedFor = waitedFor});
  m_boxes.push_back(asked);
  m_loop.wake();
  return asked;
}

BoxAnswer Face::showBox(const Box& box, const std::function<void(const std::function<bool()>&)>& waitUntil) {
  const auto asked = ask(box, true);
  waitUntil([&] { return asked->answer.has_value(); });
  return asked->answer.value_or(BoxAnswer::Ok);
}

void Face::postBox(const Box& box) {
  (void)ask(box, false);
}

std::vector<std::shared_ptr<Face::Asked>> Face::boxesToShow() const {
  std::vector<std::shared_ptr<Asked>> toShow;
  for (const auto& asked : m_boxes)
    if (!asked->shown) toShow.push_back(asked);
  for (const auto& asked : toShow) asked->shown = true;
  return toShow;
}

void Face::showBoxes(const std::vector<std::shared_ptr<Asked>>& boxes) {
  for (const auto& asked : boxes) {
    m_loop.showBox(asked->box, asked->waitedFor, [this, asked](BoxAnswer answer) {
      if (m_desk.closing()) return;
      m_desk.takeToCopy();  // an answer is a value: it may come while a handler sleeps
      asked->answer = answer;
      std::erase(m_boxes, asked);
      m_desk.give();
    });
  }
}

}  // namespace velgrove
