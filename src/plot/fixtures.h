#pragma once

#include <filesystem>
#include <string>

#include "controls/form.h"
#include "controls/machine.h"

namespace velgrove {

/// The hidden form that prepares the shape files, once at start-up, before a plot loads them.
class Fixtures {
 public:
  /// `graphics`: the folder of the shapes; empty where nobody sees the plot, and then nothing is prepared.
  Fixtures(Machine& machine, std::filesystem::path graphics)
      : m_machine(machine), m_graphics(std::move(graphics)) {}
  Fixtures(const Fixtures&) = delete;
  Fixtures& operator=(const Fixtures&) = delete;

  Form Window;

  /// Prepares the files of all shapes.
  void Form_Load();
  /// Prepares the file of one shape; the first touch loads the form. A file that fails raises the error
  /// pattern, then a box that names it.
  void GetFixtureShape(const std::string& name, std::int16_t id);

 private:
  void prepare(const std::string& name);

  Machine& m_machine;
  std::filesystem::path m_graphics;
  bool m_loaded = false;
};

}  // namespace velgrove
