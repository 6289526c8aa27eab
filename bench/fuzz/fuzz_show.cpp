// Any bytes as a show file: what reads as a show is written and read again without a change, also by way of
// JSON.

#include "fuzz.h"
#include "model/show_file.h"
#include "model/show_json.h"

namespace velgrove::fuzz {
namespace {

void writesTheSameAgain(clsProject& project, DMXInputRecords inputs) {
  const std::string first = writeShow(project);
  const ShowRead again = readShow(first, inputs);
  require(again.project != nullptr && again.faults.empty(), "a show that was written reads without a fault");
  require(writeShow(*again.project) == first, "a second write gives the same bytes");
}

void read(std::string_view bytes, DMXInputRecords inputs) {
  const ShowRead read = readShow(bytes, inputs);
  for (const FileFault& fault : read.faults) {
    require(fault.offset <= bytes.size(), "a fault lies inside the file");
    require(!describe(fault).empty(), "a fault has words");
  }
  if (read.project == nullptr) return require(!read.faults.empty(), "a refusal has a reason");
  writesTheSameAgain(*read.project, inputs);
  if (inputs == DMXInputRecords::Leave) return;
  const std::string written = writeShow(*read.project);
  require(!read.faults.empty() || written == bytes, "an undamaged show gives back every byte");
  require(writeShow(*showFromJson(showToJson(*read.project))) == written, "JSON loses nothing");
}

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velgrove;
  fuzz::read(fuzz::textOf(data, size), DMXInputRecords::Leave);
  fuzz::read(fuzz::textOf(data, size), DMXInputRecords::Read);
  return 0;
}
