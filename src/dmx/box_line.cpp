#include "dmx/box_line.h"

namespace velgrove {

SerialLine boxOnALine(InterfaceBox& box, std::function<void(std::chrono::milliseconds)> pass) {
  return {
      .open = [](const std::string&) { return LineStatus::Ok; },
      .close = [&box] { box.reset(); },
      .write =
          [&box](std::span<const std::uint8_t> bytes) {
            box.receive(bytes);
            return LineResult{LineStatus::Ok, bytes.size()};
          },
      .read =
          [&box](std::span<std::uint8_t> into) {
            const std::size_t count = box.takeReplies(into);
            return LineResult{count > 0 ? LineStatus::Ok : LineStatus::Full, count};
          },
      .wait =
          [&box, pass = std::move(pass)](std::chrono::milliseconds atMost) {
            if (box.waiting() == 0 && !box.holdsBack()) pass(atMost);
          },
      .drain = [](std::chrono::milliseconds) {},
      .turnRound = [](std::chrono::milliseconds) {},
  };
}

}  // namespace velgrove
