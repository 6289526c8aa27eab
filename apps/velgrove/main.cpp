#include <cstdlib>
#include <filesystem>

#include "desktop/desktop.h"

namespace {

/// A desktop that opens a show hands its path on by the environment: the desk has no command line.
std::string showHandedOver() {
  const char* const show = std::getenv("VELGROVE_SHOW");
  if (show == nullptr || *show == '\0') return "";
  std::error_code adrift;  // in a folder that is gone; then the path stays as it came
  const auto whole = std::filesystem::absolute(show, adrift);
  return adrift ? show : whole.string();
}

}  // namespace

int main(int argc, char** argv) {
  return velgrove::runDesktop(argc, argv, showHandedOver());
}
