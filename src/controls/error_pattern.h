#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>

#include "controls/faults.h"

namespace velgrove {

enum class BoxIcon { None, Critical, Warning, Question, Information };
enum class BoxButtons { Ok, YesNo, AbortRetryIgnore };
enum class BoxAnswer { Ok, Yes, No, Abort, Retry, Ignore };

/// A message box. Boxes without a title of their own have the program's name.
struct Box {
  std::string text;
  std::string title = "Velgrove";
  BoxButtons buttons = BoxButtons::Ok;
  BoxIcon icon = BoxIcon::None;
};

/// How boxes reach the operator. Tests and rehearsal answer them from a script.
struct MessageBoxes {
  /// Shows a box and waits for the answer; other timers go on meanwhile.
  std::function<BoxAnswer(const Box&)> show;
  /// Shows a box and returns at once; nobody waits for the answer.
  std::function<void(const Box&)> post;
};

/// What a timer's handler keeps between ticks, so that a lasting fault shows its box once and not at every
/// tick.
class FaultMemory {
 public:
  /// A tick begins: what the last one met becomes the measure.
  void beginTick() { m_before = std::exchange(m_now, {}); }
  /// Notes a fault of this tick; true when the last tick had fewer of its kind, so that this one is new.
  bool note(Fault fault) {
    const auto kind = static_cast<std::size_t>(fault);
    return ++m_now[kind] > m_before[kind];
  }

 private:
  using Counts = std::array<int, FaultCount>;
  Counts m_before{};
  Counts m_now{};
};

/// The desk's one way with run-time errors. A procedure runs its steps through `run`; when one throws, the
/// operator is asked: Abort passes the error to the caller, Retry runs the step again, Ignore goes on behind
/// it.
///
/// Inside a timer's handler (see Tick) a fault shows its box only when it is new, and the handlers that carry
/// the light never stand still for an answer: there the fault is taken as ignored and the box is posted.
class ErrorPattern {
 public:
  explicit ErrorPattern(const MessageBoxes& boxes) : m_boxes(boxes) {}
  ErrorPattern(const ErrorPattern&) = delete;
  ErrorPattern& operator=(const ErrorPattern&) = delete;

  /// Runs one step under the pattern.
  template <class Step>
  void run(Step&& step) {
    for (;;) {
      try {
        std::forward<Step>(step)();
        return;
      } catch (const RunTimeError& error) {
        switch (ask(error)) {
          case BoxAnswer::Retry:
            continue;
          case BoxAnswer::Abort:
            throw;
          default:
            return;
        }
      }
    }
  }

  /// Runs the steps of a procedure, one after the other.
  template <class... Steps>
  void steps(Steps&&... step) {
    (run(std::forward<Steps>(step)), ...);
  }

  /// Runs one step whose errors are passed over without a word.
  template <class Step>
  static void skip(Step&& step) {
    try {
      std::forward<Step>(step)();
    } catch (const RunTimeError&) {  // NOLINT(bugprone-empty-catch): passing over is what this is for
    }
  }

  enum class Waits { ForAnswer, Never };

  /// Marks the time during which a timer's handler runs; ticks nest when a box lets other timers run.
  class Tick {
   public:
    Tick(FaultMemory& memory, Waits waits) : m_outer(current), m_memory(memory), m_waits(waits) {
      m_memory.beginTick();
      current = this;
    }
    ~Tick() { current = m_outer; }
    Tick(const Tick&) = delete;
    Tick& operator=(const Tick&) = delete;

   private:
    friend class ErrorPattern;
    Tick* m_outer;
    FaultMemory& m_memory;
    Waits m_waits;

    /// The innermost tick of this thread: the desk thread and the face come in by the same door, each with
    /// its own stack of handlers.
    static thread_local Tick* current;
  };

  /// Whether this thread is inside the tick of a timer that must not wait for an answer.
  [[nodiscard]] static bool mustNotWait() {
    return Tick::current != nullptr && Tick::current->m_waits == Waits::Never;
  }

 private:
  [[nodiscard]] BoxAnswer ask(const RunTimeError& error);

  const MessageBoxes& m_boxes;
};

}  // namespace velgrove
