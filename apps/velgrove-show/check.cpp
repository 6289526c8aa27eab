#include <cstdio>

#include "commands.h"
#include "controls/files.h"
#include "messages.h"
#include "playback/preflight.h"

namespace velgrove {

/// A damaged show is checked as far as it goes; the damage is among the findings.
int checkFile(const std::string& file) {
  ShowRead read = readShow(readFile(file), DMXInputRecords::Read);
  if (read.project == nullptr) {
    for (const FileFault& fault : read.faults) complain(file + ": " + describe(fault));
    return 1;
  }
  const auto findings = checkShow({.project = read.project.get(), .damage = std::move(read.faults)});
  for (const Finding& finding : findings) (void)std::puts(lineText(finding).c_str());
  (void)std::puts(countText(findings).c_str());  // what fails here, printedAll tells
  return printedAll() && faultCount(findings) == 0 ? 0 : 1;
}

}  // namespace velgrove
