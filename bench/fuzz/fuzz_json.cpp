// Any text as a show in JSON: it is refused in words, or becomes a show that comes back from its bytes.

#include "controls/faults.h"
#include "fuzz.h"
#include "model/show_file.h"
#include "model/show_json.h"

namespace velgrove::fuzz {
namespace {

std::shared_ptr<clsProject> showOf(std::string_view json) {
  try {
    return showFromJson(json);
  } catch (const RunTimeError& error) {
    require(error.fault() == Fault::File, "a refusal is a fault of the file");
    require(!std::string_view(error.what()).empty(), "a refusal has a reason");
    return nullptr;
  }
}

void read(std::string_view json) {
  const auto project = showOf(json);
  if (project == nullptr) return;
  const std::string bytes = writeShow(*project);
  const std::string text = showToJson(*project);
  require(writeShow(*showFromJson(text)) == bytes, "our own JSON reads back");
  const ShowRead again = readShow(bytes, DMXInputRecords::Read);
  if (again.project == nullptr) return require(project->colViews().count() == 0, "a show with a view opens");
  require(again.faults.empty(), "a show from JSON is whole");
  require(showToJson(*again.project) == text, "a show from JSON comes back from its bytes");
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  velgrove::fuzz::read(velgrove::fuzz::textOf(data, size));
  return 0;
}
