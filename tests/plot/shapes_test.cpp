// The fixture shapes: exchange drawings, the shape files made from them, and what damaged ones do.

#include "plot/shapes.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

#include "controls/files.h"
#include "controls/hand_clock.h"
#include "core/show_state.h"
#include "plot/dxf_import.h"
#include "plot/fixtures.h"
#include "plot/shape_file.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace velgrove::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A drawing from its entities, a pair to a word and its value: "LINE 10=0 20=0 11=5 21=5".
std::string drawing(const std::string& entities, const std::string& blocks = "") {
  std::string text;
  const auto pair = [&](const std::string& code, const std::string& value) {
    text += code + "\n" + value + "\n";
  };
  const auto section = [&](const std::string& name, const std::string& words) {
    pair("0", "SECTION");
    pair("2", name);
    std::istringstream all(words);
    for (std::string word; all >> word;) {
      const auto equals = word.find('=');
      if (equals == std::string::npos)
        pair("0", word);
      else
        pair(word.substr(0, equals), word.substr(equals + 1));
    }
    pair("0", "ENDSEC");
  };
  if (!blocks.empty()) section("BLOCKS", blocks);
  section("ENTITIES", entities);
  pair("0", "EOF");
  return text;
}

class Shapes : public testing::Test {
 protected:
  TempFolder folder;

  fs::path write(const std::string& name, const std::string& bytes) {
    std::ofstream(folder / name, std::ios::binary) << bytes;
    return folder / name;
  }
  std::shared_ptr<const Block> import(const std::string& text) {
    return importExchangeDrawing(write("test.dxf", text));
  }
};

TEST_F(Shapes, EachShapeOfTheDeskIsASymbolOfOneHundredUnits) {
  for (const std::string_view type : FixtureTypes) {
    const std::string name(type);
    const auto drawn = importExchangeDrawing(fs::path(DRAWINGS_DIR) / (name + ".dxf"));
    EXPECT_EQ(drawn->name, name);
    EXPECT_NEAR(std::max(drawn->extents.width(), drawn->extents.height()), 100, 1) << name;
    const auto prepared = loadShape(GRAPHICS_DIR, name);
    EXPECT_EQ(prepared->primitives.size(), drawn->primitives.size());
    EXPECT_NEAR(prepared->extents.top, drawn->extents.top, 1e-4);
  }
}

TEST_F(Shapes, ADrawingComesInWithItsArcsAndInsertedBlocks) {
  const auto block =
      import(drawing("INSERT 2=B1 10=5 20=5 41=2 42=2 50=90 "
                     "LWPOLYLINE 90=3 70=1 10=0 20=0 42=1 10=10 20=0 10=10 20=10 "
                     "POLYLINE 66=1 70=0 VERTEX 10=0 20=0 VERTEX 10=4 20=0 42=-1 VERTEX 10=8 20=0 SEQEND "
                     "ARC 10=0 20=0 40=5 50=90 51=0 CIRCLE 10=1 20=1 40=2 CIRCLE 10=1 20=1 40=2 230=-1 "
                     "LINE 10=0 20=0 11=7 21=1 TEXT 10=0 20=0 40=2.5 1=FRESNEL",
                     "BLOCK 2=B1 70=0 10=1 20=2 30=0 CIRCLE 10=1 20=3 40=3 ENDBLK"));
  ASSERT_EQ(block->primitives.size(), 7U) << "all but the text";
  const auto extentsOf = [&](int at) {
    return makeBlock("", {block->primitives[static_cast<std::size_t>(at)]})->extents;
  };
  const auto near = [](const Extents& a, const Extents& b) {
    constexpr double Chord = 0.03;  // an arc of straight pieces falls short of itself by so much
    return std::abs(a.left - b.left) < Chord && std::abs(a.top - b.top) < Chord &&
           std::abs(a.right - b.right) < Chord && std::abs(a.bottom - b.bottom) < Chord;
  };
  EXPECT_TRUE(near(extentsOf(0), {-3, 11, 9, -1})) << "scaled twice, turned, about its base point";
  EXPECT_TRUE(near(extentsOf(1), {0, 10, 10, -5})) << "a half circle below the first side";
  EXPECT_TRUE(near(extentsOf(2), {0, 2, 8, 0})) << "a half circle above";
  EXPECT_EQ(std::get<Arc>(block->primitives[3]), (Arc{{0, 0}, 5, 90, 360}));
  EXPECT_EQ(std::get<Circle>(block->primitives[4]), (Circle{{1, 1}, 2}));
  EXPECT_TRUE(near(extentsOf(5), {-3, 3, 1, -1})) << "drawn on the back";
  EXPECT_EQ(std::get<Polyline>(block->primitives[6]).points.size(), 2U);
}

TEST_F(Shapes, AFileThatIsNoWholeDrawingIsRefusedByName) {
  const std::string good = drawing("LINE 10=0 20=0 11=5 21=5");
  const std::string nested = "BLOCK 2=B1 70=0 10=0 20=0 INSERT 2=B1 10=0 20=0 ENDBLK";
  for (const std::string& text : {
           std::string(),
           std::string("To be, or not to be:\nthat is the question\n"),
           std::string("AutoCAD Binary DXF\r\n\x1a\0", 22),
           std::string(100, '\0'),
           drawing(""),
           drawing("TEXT 10=0 20=0 40=2.5 1=FRESNEL"),
           drawing("CIRCLE 10=0 20=0 40=0"),
           drawing("LINE 10=0 20=0 11=1e9 21=5"),
           drawing("LWPOLYLINE 90=2000000000 70=0 10=0 20=0"),
           drawing("LWPOLYLINE 90=3 70=0 10=0 20=0 10=5 20=5"),
           drawing("LWPOLYLINE 90=1 70=0 10=0 20=0 10=5 20=5"),
           drawing("INSERT 2=B1 10=0 20=0", nested),
           drawing("LINE 10=0 20= 11=5 21=5"),
           drawing("LINE 10=0 20=up 11=5 21=5"),
           good + good,
           good.substr(0, good.size() - 4),
           std::string(std::size_t{3} << 20, '\n'),
       }) {
    const RunTimeError error = errorOf([&] { (void)import(text); });
    EXPECT_EQ(error.fault(), Fault::File) << text;
    EXPECT_NE(std::string(error.what()).find(folder / "test.dxf"), std::string::npos) << error.what();
  }
  EXPECT_EQ(errorOf([&] { (void)importExchangeDrawing(folder / "missing.dxf"); }).fault(), Fault::File);
  EXPECT_EQ(errorOf([&] { (void)importExchangeDrawing(folder.path()); }).fault(), Fault::File);
}

TEST_F(Shapes, ADrawingCutOffAnywhereIsRefused) {
  const std::string whole = readFile(fs::path(DRAWINGS_DIR) / "scoop.dxf");
  for (std::size_t length = 0; length + 2 < whole.size(); length += 7)
    EXPECT_EQ(errorOf([&] { (void)import(whole.substr(0, length)); }).fault(), Fault::File) << length;
}

TEST_F(Shapes, PreparingTwiceGivesTheSameFile) {
  write("leko.dxf", readFile(fs::path(DRAWINGS_DIR) / "leko.dxf"));
  prepareShape(folder.path(), "leko");
  const std::string first = readFile(folder / "leko.cad");
  EXPECT_EQ(shapeText(*loadShape(folder.path(), "leko")), first);
  fs::last_write_time(folder / "leko.cad", fs::last_write_time(folder / "leko.dxf") - 1h);
  prepareShape(folder.path(), "leko");
  EXPECT_EQ(readFile(folder / "leko.cad"), first);
}

TEST_F(Shapes, AnArcBeyondTheDigitsOfAShapeFileDoesNotSpoilIt) {
  write("leko.dxf", drawing("ARC 10=0 20=0 40=5 50=0.00001 51=0.000010000001 "
                            "ARC 10=0 20=0 40=6 50=359.99999 51=0.000001 "
                            "ARC 10=0 20=0 40=7 50=3610 51=3620.5 "
                            "ARC 10=0 20=0 40=8 50=1.000551 51=361.00055"));
  prepareShape(folder.path(), "leko");
  const auto shape = loadShape(folder.path(), "leko");
  EXPECT_EQ(shape->primitives, (std::vector<Primitive>{Arc{{0, 0}, 7, 10, 20.5}, Circle{{0, 0}, 8}}));
}

TEST_F(Shapes, AShapeFileAsNewAsItsDrawingStaysAsItIs) {
  write("leko.dxf", drawing("CIRCLE 10=0 20=0 40=4"));
  write("leko.cad", "ours");
  const auto drawn = fs::last_write_time(folder / "leko.dxf");
  fs::last_write_time(folder / "leko.cad", drawn);
  prepareShape(folder.path(), "leko");
  EXPECT_EQ(readFile(folder / "leko.cad"), "ours");
  fs::last_write_time(folder / "leko.cad", drawn - 1s);
  prepareShape(folder.path(), "leko");
  EXPECT_EQ(readFile(folder / "leko.cad"), "velgrove shape 1\ngroup leko\ncircle 0 0 4\nend\n");
}

TEST_F(Shapes, AFolderThatCannotBeWrittenServesTheShapesThatItHas) {
  write("leko.cad", "ours");
  write("leko.dxf", drawing("CIRCLE 10=0 20=0 40=4"));
  fs::last_write_time(folder / "leko.cad", fs::last_write_time(folder / "leko.dxf") - 1s);
  fs::permissions(folder.path(), fs::perms{0555});
  constexpr uid_t Nobody = 65534;
  const uid_t self = ::geteuid();
  ASSERT_EQ(::seteuid(self == 0 ? Nobody : self), 0) << "root may write everywhere";
  EXPECT_NO_THROW(prepareShape(folder.path(), "leko"));
  ASSERT_EQ(::seteuid(self), 0);
  fs::permissions(folder.path(), fs::perms::owner_all);
  EXPECT_EQ(readFile(folder / "leko.cad"), "ours");
}

TEST_F(Shapes, ADamagedShapeFileIsRefusedByNameAndLine) {
  const std::string head = "velgrove shape 1\ngroup test\n";
  struct Case {
    std::string text;
    int line;
  };
  for (const auto& [text, line] : std::vector<Case>{
           {"", 1},
           {"To be, or not to be\n", 1},
           {"velgrove shape 1\ncircle 0 0 5\nend\n", 2},
           {head + "circle 0 0 5\n", 4},
           {head + "circle 0 0", 3},
           {head + "circle 0 0\nend\n", 3},
           {head + "circle 0 0 -5\nend\n", 3},
           {head + "circle 0 five 5\nend\n", 3},
           {head + "polygon 0 0 5 5 7\nend\n", 3},
           {head + "polyline 0 0\nend\n", 3},
           {head + "polyline 0 0 1e300 0\nend\n", 3},
           {head + "arc 0 0 5 90 90\nend\n", 3},
           {head + "arc 0 0 5 0 720\nend\n", 3},
           {head + "ellipse 0 0 5 3\nend\n", 3},
           {head + "end\n", 3},
           {head + "circle 0 0 5\nend\nmore\n", 4},
       }) {
    const RunTimeError error = errorOf([&] { (void)blockOfShapeText(text, "/shapes/test.cad"); });
    EXPECT_EQ(error.fault(), Fault::File) << text;
    const std::string where = "/shapes/test.cad: line " + std::to_string(line) + ":";
    EXPECT_TRUE(std::string(error.what()).starts_with(where)) << text << error.what();
  }
}

TEST_F(Shapes, TheHiddenFormPreparesAllShapesAtItsFirstTouchAndNamesWhatItCannot) {
  for (const std::string_view type : FixtureTypes)
    if (type != "par38") write(std::string(type) + ".dxf", drawing("LINE 10=0 20=0 11=5 21=5"));
  std::vector<Box> boxes;
  HandClock clock;
  Machine machine(clock.clock(), {.show =
                                      [&](const Box& box) {
                                        boxes.push_back(box);
                                        return BoxAnswer::Ignore;
                                      },
                                  .post = {}});
  Fixtures form(machine, folder.path());
  form.GetFixtureShape("icue", 6);
  EXPECT_TRUE(fs::exists(folder / "fresnel.cad"));
  EXPECT_TRUE(fs::exists(folder / "icue.cad"));
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[0].title, "SYSTEM ERROR");
  EXPECT_EQ(boxes[1].title, "Velgrove");
  EXPECT_TRUE(boxes[1].text.starts_with((folder / "par38.dxf").string())) << boxes[1].text;
}

TEST_F(Shapes, TheGraphicsLieBesideTheExecutableOrInTheShareFolder) {
  fs::create_directories(folder / "bin");
  EXPECT_EQ(graphicsFolder(folder / "bin"), folder / "bin" / "graphics");
  fs::create_directories(folder / "share/velgrove/graphics");
  EXPECT_EQ(graphicsFolder(folder / "bin"), folder / "share/velgrove/graphics");
  fs::create_directories(folder / "bin/graphics");
  EXPECT_EQ(graphicsFolder(folder / "bin"), folder / "bin/graphics");
}

}  // namespace
}  // namespace velgrove::test
