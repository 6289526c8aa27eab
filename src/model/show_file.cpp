#include "model/show_file.h"

#include "model/record_fields.h"

namespace velgrove {
namespace {

/// Why a file has not one whole view to work on; nothing when it has.
std::optional<FileFault> noFirstView(std::string_view bytes) {
  RecordReader reader(bytes);
  clsProject project;
  RecordFields::fields(project, reader);
  const bool header = reader.faults().empty();
  if (header && project.NumberOfViews == 0)
    return FileFault{reader.offset(), "NumberOfViews", "the show has no view"};
  if (header) {
    const RecordPlace::Inside inside(reader.place(), "view", 1);
    clsView view;
    RecordFields::fields(view, reader);
  }
  if (reader.refusal() || reader.faults().empty()) return reader.refusal();
  FileFault fault = reader.faults().front();
  fault.what += ": this is no show";
  return fault;
}

/// About how many bytes the show will take, so that writing doesn't move them again and again.
std::size_t expectedSize(clsProject& project) {
  constexpr std::size_t Header = 311;
  constexpr std::size_t Fixture = 250, Zoom = 32, SubMaster = 550, Cue = 620, Input = 550, Names = 100;
  const auto bytes = [](int count, std::size_t each) { return static_cast<std::size_t>(count) * each; };
  std::size_t size = Header + bytes(project.colDMXIn().count(), Input);
  for (const auto& view : project.colViews())
    size += Names + bytes(view->colFixtures().count(), Fixture) + bytes(view->colZooms().count(), Zoom) +
            bytes(view->colSubMasters().count(), SubMaster);
  for (const auto& list : project.colQueueData()) size += Names + bytes(list->colQueueEntries().count(), Cue);
  return size;
}

}  // namespace

std::string describe(const FileFault& fault) {
  return "offset " + std::to_string(fault.offset) + ", " + fault.place + ": " + fault.what;
}

ShowRead readShow(std::string_view bytes, DMXInputRecords inputs) {
  if (auto fault = noFirstView(bytes)) return {nullptr, {*std::move(fault)}};
  RecordReader reader(bytes);
  auto project = std::make_shared<clsProject>();
  project->restore(reader);
  if (inputs == DMXInputRecords::Read) RecordFields::inputs(*project, reader);
  if (const auto& fault = reader.refusal()) return {nullptr, {*fault}};
  ShowRead read{std::move(project), reader.faults()};
  if (inputs == DMXInputRecords::Read && !reader.atEnd())
    read.faults.push_back(
        {reader.offset(), "end of the show",
         std::to_string(bytes.size() - reader.offset()) + " bytes that belong to no record"});
  return read;
}

std::string writeShow(clsProject& project) {
  RecordWriter file(expectedSize(project));
  project.Save(file);
  return file.take();
}

}  // namespace velgrove
