#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/record_io.h"
#include "model/show.h"

namespace velgrove {

/// One line for the operator: "offset 312, view 1, ViewName: the file ends inside this field".
[[nodiscard]] std::string describe(const FileFault& fault);

enum class DMXInputRecords {
  Leave,  ///< as the desk does: neither they nor anything behind them is looked at
  Read,   ///< as a tool does that gives back every byte
};

/// What came of reading a show.
struct ShowRead {
  std::shared_ptr<clsProject> project;  ///< null when the file was refused; `faults` then says why
  std::vector<FileFault> faults;        ///< empty for an undamaged file
};

/// Reads the bytes of a show file. A damaged one is read as far as it goes; refused is only what has not one
/// whole view, or a negative count.
[[nodiscard]] ShowRead readShow(std::string_view bytes, DMXInputRecords inputs);

/// The bytes of a show file. Recounts all counts. Fault::Overflow for what the format can't hold: more than
/// 32767 of a kind, a text longer than 65535 characters.
[[nodiscard]] std::string writeShow(clsProject& project);

}  // namespace velgrove
