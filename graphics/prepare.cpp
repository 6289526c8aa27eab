// Makes the shape files of a folder from its drawings, so that an installed folder has them and needn't be
// writable.

#include <iostream>

#include "core/show_state.h"
#include "plot/shapes.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: prepare_shapes FOLDER\n";
    return 2;
  }
  try {
    for (const std::string_view type : velgrove::FixtureTypes)
      velgrove::prepareShape(argv[1], std::string(type));
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
