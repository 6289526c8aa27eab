#include "controls/serial_line.h"

namespace velgrove {

const char* describe(LineStatus status) {
  switch (status) {
    case LineStatus::Ok:
      return "open";
    case LineStatus::Full:
      return "full";
    case LineStatus::Gone:
      return "unplugged";
    case LineStatus::Missing:
      return "not there";
    case LineStatus::Busy:
      return "held by another program";
    case LineStatus::Refused:
      return "no permission to open it";
    case LineStatus::Unusable:
      return "not a serial port that runs at 500000 baud";
  }
  return "";
}

}  // namespace velgrove
