#pragma once

#include <functional>
#include <stdexcept>

#include "controls/faults.h"

namespace velgrove {

/// The run-time error that some work raises; the test fails when none comes.
inline RunTimeError errorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const RunTimeError& error) {
    return error;
  }
  throw std::logic_error("no run-time error came");
}

}  // namespace velgrove
