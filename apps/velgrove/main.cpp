#include "desktop/desktop.h"

int main(int argc, char** argv) {
  return velgrove::runDesktop(argc, argv);
}
