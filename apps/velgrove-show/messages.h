#pragma once

#include <cstdio>
#include <string>

namespace velgrove {

/// One line on standard error.
inline void say(const std::string& line) {
  (void)std::fprintf(stderr, "%s\n", line.c_str());
}

/// Tells on standard error why the work failed.
inline void complain(const std::string& what) {
  say("velgrove-show: " + what);
}

/// Whether all that was printed has reached standard output; complains when it hasn't.
inline bool printedAll() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
  complain("standard output can't be written");
  return false;
}

}  // namespace velgrove
