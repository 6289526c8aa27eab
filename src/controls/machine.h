#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "controls/error_pattern.h"
#include "controls/form.h"
#include "controls/timer.h"

namespace velgrove {

class Drawing;

/// The dialogs of the platform. Each waits for the operator while other handlers run.
struct Dialogs {
  /// Asks where to save; nothing when the operator cancelled. `filter` is "words|pattern".
  std::function<std::optional<std::string>(const std::string& title, const std::string& filter,
                                           const std::string& fileName)>
      saveFile;
  /// Asks for a folder, beginning in one; its path ends with a separator. "" when the operator cancelled.
  std::function<std::string(const std::string& start, const std::string& title)> BrowseForDir;
  /// Asks for a printer; false when the operator cancelled.
  std::function<bool(const std::string& title)> choosePrinter;
  /// Prints what a drawing shows on the printer chosen, in the ratio of its view.
  std::function<void(const Drawing&)> printView;
};

/// What the desk's behaviour asks of the machine that it runs on. On the real clock the desk thread stands
/// behind it, in tests and rehearsal a clock that is moved by hand.
struct Machine {
  Machine(Clock clock, const MessageBoxes& toOperator)
      : timers(std::move(clock)), boxes(neverHoldingUp(toOperator)) {}
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  TimerSet timers;
  MessageBoxes boxes;
  ErrorPattern errors{boxes};
  /// Waits without letting a handler run.
  std::function<void(Milliseconds)> Sleep;
  /// Lets all timers run that are due at its start.
  std::function<void()> DoEvents;
  /// The one way to wait: other handlers run until the condition holds.
  std::function<void(const std::function<bool()>&)> waitUntil;
  /// Shows a form that takes the operator's hand, and waits until it's gone.
  void showModal(Form& form) const {
    form.Modal = true;
    form.Show();
    waitUntil([&form] { return !form.Visible; });
  }
  /// Does work that may wait for the disk, with the desk given back, and passes on its error. The work
  /// touches nothing of the desk.
  std::function<void(const std::function<void()>&)> aside = [](const auto& work) { work(); };
  /// Does work that may wait for the disk while nobody waits for it: the call returns at once. One runs after
  /// another; of those that wait only the newest is done, the others are forgotten. `failed` gets the reason,
  /// with the desk taken. The work touches nothing of the desk.
  std::function<void(std::function<void()> work, std::function<void(const std::string& reason)> failed)>
      inBackground = [](const auto& work, const auto& failed) {
        try {
          work();
        } catch (const std::exception& error) {
          failed(error.what());
        }
      };
  velgrove::Dialogs Dialogs;

  [[nodiscard]] std::int32_t timeGetTime() const { return timers.clock().timeGetTime(); }

 private:
  /// A box that comes up in the merge, the send or a fade step is posted: the light never waits for its
  /// answer.
  static MessageBoxes neverHoldingUp(const MessageBoxes& toOperator) {
    auto show = [toOperator](const Box& box) {
      if (!ErrorPattern::mustNotWait()) return toOperator.show(box);
      toOperator.post(box);
      return BoxAnswer::Ok;
    };
    return {.show = std::move(show), .post = toOperator.post};
  }
};

}  // namespace velgrove
