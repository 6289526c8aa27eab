#pragma once

#include <string>

namespace velgrove {

/// Runs the desk with its windows until the operator leaves or a signal ends it. The first dialog stands on
/// `show`, a whole path, when there is one. The result is the program's.
int runDesktop(int argc, char** argv, const std::string& show);

}  // namespace velgrove
