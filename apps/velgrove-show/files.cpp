// The commands that turn shows into text and back.

#include "controls/files.h"

#include <cstdio>

#include "commands.h"
#include "messages.h"
#include "model/show_file.h"
#include "model/show_json.h"

namespace velgrove {
namespace {

/// Reads a show as far as it goes; one message for each fault. Null when nothing could be made of it.
ShowRead readWithMessages(const std::string& file) {
  ShowRead read;
  try {
    read = readShow(readFile(file), DMXInputRecords::Read);
  } catch (const RunTimeError& error) {
    complain(error.what());
    return read;
  }
  for (const FileFault& fault : read.faults) complain(file + ": " + describe(fault));
  return read;
}

/// Puts the name of a file before what is wrong with its content.
template <class Work>
std::string naming(const std::string& file, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const RunTimeError& error) {
    throw RunTimeError(error.fault(), file + ": " + error.what());
  }
}

std::string textOf(clsProject& project, PrintAs how, std::optional<ShowSheet> which) {
  if (how == PrintAs::Json) return showToJson(project);
  if (how == PrintAs::Text && !which) return showText(project);
  const auto sheet = sheetOf(project, which.value_or(ShowSheet::ListXY));
  if (!sheet) throw RunTimeError(Fault::ObjectMissing, "the show has no such cue list");
  return how == PrintAs::Csv ? sheetCsv(*sheet) : sheetText(*sheet);
}

}  // namespace

bool isWholeShow(const std::string& file) {
  const ShowRead read = readWithMessages(file);
  return read.project != nullptr && read.faults.empty();
}

int printShow(const std::string& file, PrintAs how, std::optional<ShowSheet> sheet) {
  const ShowRead read = readWithMessages(file);
  if (read.project == nullptr) return 1;
  const std::string text = naming(file, [&] { return textOf(*read.project, how, sheet); });
  (void)std::fwrite(text.data(), 1, text.size(), stdout);  // what fails here, printedAll tells
  return printedAll() && read.faults.empty() ? 0 : 1;
}

int makeShow(const std::string& jsonFile, const std::string& showFile) {
  try {
    const std::string json = readFile(jsonFile);
    const std::string bytes = naming(jsonFile, [&] { return writeShow(*showFromJson(json)); });
    writeFileSafely(showFile, bytes, Backup::None);
    return 0;
  } catch (const RunTimeError& error) {
    complain(error.what());
    return 1;
  }
}

bool saveShow(clsProject& project, const std::string& file) {
  try {
    writeFileSafely(file, naming(file, [&] { return writeShow(project); }), Backup::Keep);
    return true;
  } catch (const RunTimeError& error) {
    complain(error.what());
    return false;
  }
}

}  // namespace velgrove
