// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Picking with the mesh viewer's command line, and its report.
#include "MeshviewSupport.h"

#include <nlohmann/json.hpp>

#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkXMLPolyDataWriter.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace {

using namespace morrow_test;

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

/// Seen from +x in parallel projection the cube is a square: its side +x in front of -x, and the others on
/// its border. Faces, and elements, are numbered +x, -x, +y, -y, +z, -z; y is to the right and z up.
class MeshviewPickTest : public MeshviewTest
{
protected:
  void SetUp() override
  {
    MeshviewTest::SetUp();
    mCube = write_cube();
    static const PixelRegion square =
        find_pixels(draw(of_cube({})), [](Rgb pixel) { return !is_white(pixel); });
    ASSERT_GT(square.width(), 100);
    std::filesystem::remove(mPicture);
    mLeft = square.min_x;
    mRight = square.max_x;
    mBottom = square.min_y;
    mTop = square.max_y;
  }

  [[nodiscard]] Texts of_cube(const Texts& more) const
  {
    Texts all = {mCube, "--view=+x", "--parallel"};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }

  /// The report of a run that must succeed; 200 x 200 pixels.
  [[nodiscard]] Json report(Texts arguments)
  {
    arguments.insert(arguments.end(), {"--size", "200x200", "--report", mReport});
    mOutcome = run(arguments);
    EXPECT_EQ(mOutcome.status, 0) << ::testing::PrintToString(mOutcome);
    EXPECT_EQ(mOutcome.err, "");
    return Json::parse(read_text(mReport), nullptr, false);
  }

  /// What the report lists, in its order.
  static Texts entities_of(const Json& report)
  {
    Texts entities;
    for (const Json& entity : report.at("entities")) {
      entities.push_back(entity.at("entity"));
    }
    return entities;
  }
  [[nodiscard]] Texts entities(const Texts& arguments) { return entities_of(report(of_cube(arguments))); }

  static std::string pixels(std::initializer_list<int> numbers)
  {
    std::string text;
    for (const int number : numbers) {
      text += (text.empty() ? "" : ",") + std::to_string(number);
    }
    return text;
  }

  std::string mCube;
  std::string mReport = in_folder("report.json");
  int mLeft = 0; // of the square's outermost pixels
  int mRight = 0;
  int mBottom = 0;
  int mTop = 0;
  Outcome mOutcome;
};

bool is_picked_colour(Rgb pixel)
{
  return pixel.r > 2.2 * pixel.g && pixel.g > 1.3 * pixel.b && pixel.r > 60;
}

TEST_F(MeshviewPickTest, AClickReportsWhatIsBelowItFromFrontToBack)
{
  const Json json = report(of_cube({"--pick", "100,100"}));
  EXPECT_EQ(entities_of(json), Texts({"face 0", "face 1"}));
  EXPECT_EQ(json["type"], "face");
  EXPECT_EQ(json["pick"], Json({{"shape", "point"}, {"points", {{100, 100}}}}));
  EXPECT_EQ(json["visible_only"], false);
  const Json& front = json["entities"][0];
  EXPECT_EQ(front["type"], "face");
  EXPECT_EQ(front["id"], 0);
  EXPECT_EQ(front["block"], "cube");
  EXPECT_FLOAT_EQ(front["point"][0], 1.0F);
  EXPECT_NEAR(front["point"][1], 0.0, 0.02);
  EXPECT_EQ(front["direct"], true);
  EXPECT_EQ(front["visible"], true);
  const Json& back = json["entities"][1];
  EXPECT_FLOAT_EQ(back["point"][0], -1.0F);
  EXPECT_EQ(back["visible"], false);
  EXPECT_GT(back["distance"], front["distance"]);
  EXPECT_NE(mOutcome.out.find("  Current entity is face 0.\n"), std::string::npos) << mOutcome.out;
}

TEST_F(MeshviewPickTest, VisibleOnlyLeavesOutWhatIsBehind)
{
  EXPECT_EQ(entities({"--pick", "100,100", "--visible-only"}), Texts({"face 0"}));
  EXPECT_EQ(entities({"--pick", "100,100", "--pick-type", "element"}), Texts({"element 0", "element 1"}));
  EXPECT_NE(mOutcome.out.find("  Current entity is element 0 (Element 0).\n"), std::string::npos)
      << mOutcome.out;
  EXPECT_EQ(entities({"--pick", "100,100", "--pick-type", "block"}), Texts({"cube"}));
}

TEST_F(MeshviewPickTest, PixelsCountFromTheBottomLeft)
{
  // Point 7 is the corner +y +z, at the top right, in front; point 6 is behind it.
  EXPECT_EQ(entities({"--pick", pixels({mRight, mTop}), "--pick-type", "node"}), Texts({"node 7", "node 6"}));
  EXPECT_EQ(entities({"--pick", pixels({mLeft, mBottom}), "--pick-type", "node"}),
            Texts({"node 1", "node 0"}));
  const Json corner = report(of_cube({"--pick", pixels({mLeft, mTop}), "--pick-type", "node"}));
  EXPECT_EQ(corner["entities"][0]["point"], Json({1.0, -1.0, 1.0}));
}

TEST_F(MeshviewPickTest, EdgesAreFoundNearTheCursorAndNotFar)
{
  const Json json = report(of_cube({"--pick", pixels({mLeft + 1, 100}), "--pick-type", "edge"}));
  ASSERT_EQ(json["entities"].size(), 2U); // the front one and the one behind it
  EXPECT_FLOAT_EQ(json["entities"][0]["point"][0], 1.0F);
  EXPECT_FLOAT_EQ(json["entities"][0]["point"][1], -1.0F);
  EXPECT_NEAR(json["entities"][0]["point"][2], 0.0, 0.02);
  EXPECT_FLOAT_EQ(json["entities"][1]["point"][0], -1.0F);
  EXPECT_EQ(json["entities"][0]["visible"], true);
  EXPECT_EQ(json["entities"][1]["visible"], false);
  EXPECT_EQ(entities({"--pick", pixels({mLeft + 30, 100}), "--pick-type", "edge"}), Texts());
}

TEST_F(MeshviewPickTest, ABoxTakesWhatLiesInItOrWhatItTouches)
{
  const std::string left_half = pixels({0, 0, 100, 199});
  EXPECT_EQ(entities({"--pick-box", left_half}), Texts({"face 3"})); // -y, seen from its edge
  EXPECT_EQ(entities({"--pick-box", left_half, "--partial"}),
            Texts({"face 0", "face 1", "face 3", "face 4", "face 5"}));
  EXPECT_EQ(entities({"--pick-box", left_half, "--pick-type", "element"}), Texts({"element 3"}));
  EXPECT_EQ(entities({"--pick-box", left_half, "--pick-type", "node"}),
            Texts({"node 0", "node 1", "node 4", "node 5"}));
  EXPECT_NE(mOutcome.out.find("4 entities selected\n"), std::string::npos);
  EXPECT_EQ(entities({"--pick-box", pixels({100, 199, 0, 0}), "--pick-type", "node"}).size(), 4U);
  EXPECT_EQ(entities({"--pick-box", pixels({0, 0, 199, 199}), "--pick-type", "edge"}).size(), 12U);
  EXPECT_EQ(entities({"--pick-box", left_half, "--pick-type", "block"}), Texts());
}

TEST_F(MeshviewPickTest, CirclesAndPolygonsDoTheSame)
{
  EXPECT_EQ(entities({"--pick-circle", "100,100,150"}).size(), 6U);
  EXPECT_EQ(entities({"--pick-circle", "100,100,20"}), Texts());
  const Json circle = report(of_cube({"--pick-circle", "100,100,20", "--partial"}));
  EXPECT_EQ(entities_of(circle), Texts({"face 0", "face 1"}));
  EXPECT_EQ(circle["pick"], Json({{"shape", "circle"}, {"points", {{100, 100}}}, {"radius", 20.0}}));
  // The triangle below the diagonal from the bottom left to the top right.
  const std::string below = pixels({mLeft - 5, mBottom - 3, 199, 0, mRight + 5, mTop - 20});
  EXPECT_EQ(entities({"--pick-polygon", below, "--pick-type", "node"}).size(), 4U);
  const Json polygon = report(of_cube({"--pick-polygon", below}));
  EXPECT_EQ(entities_of(polygon), Texts({"face 5"})); // -z
  EXPECT_EQ(polygon["pick"]["shape"], "polygon");
}

TEST_F(MeshviewPickTest, WhatIsPickedIsHighlighted)
{
  EXPECT_EQ(count_pixels(draw(of_cube({})), is_picked_colour), 0);
  const auto highlighted = [this](const Texts& arguments) {
    return count_pixels(draw(of_cube(arguments)), is_picked_colour);
  };
  const int whole = (mRight - mLeft + 1) * (mTop - mBottom + 1);
  EXPECT_GT(highlighted({"--pick", "100,100"}), whole * 9 / 10);
  EXPECT_GT(highlighted({"--pick", "100,100", "--pick-type", "element"}), whole * 9 / 10);
  const int node = highlighted({"--pick", pixels({mRight, mTop}), "--pick-type", "node"});
  EXPECT_GT(node, 20);
  EXPECT_LT(node, 150);
  const int edge = highlighted({"--pick", pixels({mLeft, 100}), "--pick-type", "edge"});
  EXPECT_GT(edge, mTop - mBottom);
  EXPECT_LT(edge, 8 * (mTop - mBottom));
}

TEST_F(MeshviewPickTest, WhereNothingIsNothingIsPicked)
{
  const Json click = report(of_cube({"--pick", "2,2"}));
  EXPECT_TRUE(click["entities"].is_array());
  EXPECT_TRUE(click["entities"].empty());
  EXPECT_NE(mOutcome.out.find("nothing there\n"), std::string::npos);
  EXPECT_EQ(entities({"--pick-box", "0,0,3,3", "--partial"}), Texts());
  EXPECT_EQ(entities({"--pick", "-5000,900000"}), Texts());
}

TEST_F(MeshviewPickTest, AFaultyPlaceIsRefused)
{
  const std::pair<const char*, const char*> faults[] = {{"--pick", "5"},
                                                        {"--pick", "1,2,3"},
                                                        {"--pick", "a,b"},
                                                        {"--pick", "1,"},
                                                        {"--pick", "1.5,2"},
                                                        {"--pick", "99999999,1"},
                                                        {"--pick-box", "1,2,3"},
                                                        {"--pick-circle", "1,2"},
                                                        {"--pick-circle", "1,2,-3"},
                                                        {"--pick-polygon", "1,2,3,4"},
                                                        {"--pick-polygon", "1,2,3,4,5,6,7"},
                                                        {"--pick-type", "volume"}};
  for (const auto& [option, value] : faults) {
    SCOPED_TRACE(std::string(option) + " " + value);
    expect_faulty({mCube, "--image", mPicture, option, value});
  }
  expect_faulty({mCube, "--image", mPicture, "--pick", "1,2", "--pick-box", "1,2,3,4"});
  expect_faulty({mCube, "--report", mReport});
}

TEST_F(MeshviewPickTest, AReportThatCannotBeWrittenIsToldBeforehand)
{
  const Outcome outcome = run({mCube, "--pick", "1,2", "--report", in_folder("no/such/report.json")});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("no/such/report.json"), std::string::npos);
}

TEST_F(MeshviewPickTest, TheSampleHasItsBlocksAndFaces)
{
  const auto of_sample = [this](Texts arguments) {
    arguments.insert(arguments.begin(), sample());
    return report(arguments);
  };
  const Json blocks = of_sample({"--pick-box", "0,0,199,199", "--pick-type", "block"});
  EXPECT_EQ(entities_of(blocks), Texts({"base plate", "wall", "ribs"}));
  const Json faces = of_sample({"--pick-box", "0,0,199,199"});
  EXPECT_GT(faces["entities"].size(), 20U);
  EXPECT_LT(faces["entities"].size(), 200U);
  const Json seen = of_sample({"--pick-box", "0,0,199,199", "--visible-only"});
  EXPECT_LT(seen["entities"].size(), faces["entities"].size());
  EXPECT_EQ(faces["entities"][0]["entity"], "base plate: face 0");
  std::set<long long> ids;
  const Json elements = of_sample({"--pick-box", "60,60,140,140", "--pick-type", "element"});
  for (const Json& element : elements["entities"]) {
    if (element["block"] == "base plate") {
      ids.insert(element["id"].get<long long>());
    }
  }
  EXPECT_GT(ids.size(), 50U);
  EXPECT_LT(*ids.rbegin(), 20040); // the file's numbers, as those of labels
}

/// A plate, and behind it a small one, lines and a point. From +x, y is to the right and z up.
vtkSmartPointer<vtkPolyData> plates_and_lines()
{
  const double places[][3] = {{1, 0.6, 0},      {-1, 0.21, 0.8},  {-1, 0.21, -0.8}, {-1, 1, -0.8},
                              {-1, 1, 0.8},     {-1, -0.9, -0.3}, {-1, -0.9, 0.3},  {1, -1, -1},
                              {1, 0.2, -1},     {1, 0.2, 1},      {1, -1, 1},       {-1, -0.7, -0.3},
                              {-1, 0.19, -0.3}, {-1, 0.19, 0.3},  {-1, -0.7, 0.3}};
  auto mesh = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  for (const auto& place : places) {
    points->InsertNextPoint(place);
  }
  vtkNew<vtkCellArray> arrays[3];
  arrays[0]->InsertNextCell({0});              // element 0: the point
  arrays[1]->InsertNextCell({1, 2, 3, 4});     // 1: like a U, beside the plates
  arrays[1]->InsertNextCell({5, 6});           // 2: behind the plate
  arrays[2]->InsertNextCell({7, 8, 9, 10});    // 3: the plate
  arrays[2]->InsertNextCell({11, 12, 13, 14}); // 4: the small one behind
  mesh->SetPoints(points);
  mesh->SetVerts(arrays[0]);
  mesh->SetLines(arrays[1]);
  mesh->SetPolys(arrays[2]);
  return mesh;
}

/// plates_and_lines() as a square, as the cube's.
class MeshviewPickLinesTest : public MeshviewPickTest
{
protected:
  void SetUp() override
  {
    MeshviewPickTest::SetUp();
    mCube = write_with<vtkXMLPolyDataWriter>(in_folder("plates.vtp"), plates_and_lines().Get());
  }

  [[nodiscard]] int column(double y) const
  {
    return mLeft + static_cast<int>((y + 1.0) / 2.0 * (mRight - mLeft + 1));
  }
  [[nodiscard]] int row(double z) const
  {
    return mBottom + static_cast<int>((z + 1.0) / 2.0 * (mTop - mBottom + 1));
  }

  /// The visible ones of a report's entities.
  static Texts visible_of(const Json& report)
  {
    Texts entities;
    for (const Json& entity : report.at("entities")) {
      if (entity.at("visible") == true) {
        entities.push_back(entity.at("entity"));
      }
    }
    return entities;
  }
};

TEST_F(MeshviewPickLinesTest, ABoxTellsWhatIsHidden)
{
  const Json all = report(of_cube({"--pick-box", "0,0,199,199", "--pick-type", "element"}));
  EXPECT_EQ(entities_of(all), Texts({"element 0", "element 1", "element 2", "element 3", "element 4"}));
  EXPECT_EQ(visible_of(all), Texts({"element 0", "element 1", "element 3"}));
  EXPECT_EQ(entities({"--pick-box", "0,0,199,199", "--pick-type", "element", "--visible-only"}),
            visible_of(all));
}

TEST_F(MeshviewPickLinesTest, LinesAndPointsAreClickedNearby)
{
  const Json line = report(of_cube({"--image", mPicture, "--background", "9", "--pick",
                                    pixels({column(1.0) - 1, row(0.5)}), "--pick-type", "element"}));
  ASSERT_EQ(entities_of(line), Texts({"element 1"}));
  EXPECT_FLOAT_EQ(line["entities"][0]["point"][1], 1.0F); // on the line
  EXPECT_EQ(line["entities"][0]["visible"], true);
  const Image picture = read_png(mPicture);
  const auto lit = find_pixels(picture, is_picked_colour); // three strokes, and nothing between them
  EXPECT_GT(lit.width(), (mRight - mLeft) / 3);
  EXPECT_GT(lit.height(), (mTop - mBottom) * 3 / 4);
  EXPECT_LT(count_pixels(picture, is_picked_colour), 8 * (lit.width() + 2 * lit.height()));
  EXPECT_FALSE(is_picked_colour(picture.at(column(0.4), row(0.4))));
  const Json behind = report(of_cube({"--pick", pixels({column(-0.9), row(0.0)}), "--pick-type", "element"}));
  EXPECT_EQ(entities_of(behind), Texts({"element 3", "element 2"}));
  EXPECT_EQ(visible_of(behind), Texts({"element 3"}));
  EXPECT_EQ(entities({"--pick", pixels({column(0.6) + 1, row(0.0)}), "--pick-type", "block"}),
            Texts({"plates"}));
  EXPECT_EQ(entities({"--pick", pixels({column(0.6) + 9, row(0.0)}), "--pick-type", "block"}), Texts());
}

TEST_F(MeshviewPickLinesTest, NodesAreSeenOrHiddenWhereTheyAre)
{
  const int border = column(0.2); // of the plate; both nodes are behind it, one beside it
  const Json hidden = report(of_cube({"--pick", pixels({border + 1, row(0.3)}), "--pick-type", "node"}));
  EXPECT_EQ(entities_of(hidden), Texts({"node 13"}));
  EXPECT_EQ(visible_of(hidden), Texts());
  const Json seen = report(of_cube({"--pick", pixels({border - 1, row(0.8)}), "--pick-type", "node"}));
  EXPECT_EQ(visible_of(seen), Texts({"node 1"}));
}

/// More than have a line of sight of their own: elements 0 to 19 in front of the plate, 20 to 39 behind it.
TEST_F(MeshviewPickLinesTest, ManyPointsAtOnceAreToldApartByThePlate)
{
  vtkNew<vtkPoints> points;
  vtkNew<vtkCellArray> vertices;
  for (int i = 0; i < 40; ++i) {
    vertices->InsertNextCell({points->InsertNextPoint(i < 20 ? 1.0 : -1.0, 0.00005 * (i % 20), 0.0)});
  }
  vtkNew<vtkCellArray> plate;
  plate->InsertNextCell({40, 41, 42, 43});
  for (const auto& [y, z] : {std::pair(-1, -1), {1, -1}, {1, 1}, {-1, 1}}) {
    points->InsertNextPoint(0.0, y, z);
  }
  vtkNew<vtkPolyData> mesh;
  mesh->SetPoints(points);
  mesh->SetVerts(vertices);
  mesh->SetPolys(plate);
  mCube = write_with<vtkXMLPolyDataWriter>(in_folder("many.vtp"), mesh.Get());
  const Json all = report(of_cube({"--pick", pixels({column(0.0), row(0.0)}), "--pick-type", "element"}));
  ASSERT_EQ(all["entities"].size(), 41U);
  EXPECT_EQ(all["entities"][20]["id"], 40); // the plate
  for (std::size_t i = 0; i < 41; ++i) {
    EXPECT_EQ(all["entities"][i]["visible"], i <= 20) << i;
    EXPECT_EQ(all["entities"][i]["id"] < 20, i < 20) << i;
  }
}

class MeshviewPickRealTest : public MeshviewPickTest, public ::testing::WithParamInterface<const char*>
{};

TEST_P(MeshviewPickRealTest, SomethingOfEachKindIsInTheMiddle)
{
  MORROW_REAL_MESH(path, GetParam());
  for (const char* kind : {"face", "element"}) {
    const Json json = report({path, "--pick-box", "20,20,180,180", "--pick-type", kind, "--partial"});
    EXPECT_GT(json["entities"].size(), 0U) << kind;
  }
}

INSTANTIATE_TEST_SUITE_P(Meshes, MeshviewPickRealTest,
                         ::testing::Values("hexa.vtk", "can.vtu", "mug.e", "cow.vtp"),
                         [](const auto& parameter) {
                           const std::string name = parameter.param;
                           return name.substr(0, name.find('.'));
                         });

} // namespace
