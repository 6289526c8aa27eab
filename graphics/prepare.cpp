// Makes the shape files of a folder from its drawings, so that an installed folder has them and needn't be
// writable.

#include <iostream>

#include "plot/shapes.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: prepare_shapes FOLDER\n";
    return 2;
  }
  try {
    for (const velgrove::ShapeName& shape : velgrove::ShapeNames) velgrove::prepareShape(argv[1], shape.name);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
