// Rows as tables: what stands in a cell.
#include "sim/report/section.h"

#include <gtest/gtest.h>

#include "sim/report/sections.h"

namespace {

using kelvo::sim::Format;
using kelvo::sim::Section;
using kelvo::sim::text_of;
using kelvo::sim::Value;

TEST(Cell, ShowsEachKindOfValue) {
  EXPECT_EQ(text_of(Value()), "-");
  EXPECT_EQ(text_of(Value(true)), "yes");
  EXPECT_EQ(text_of(Value(false)), "no");
  EXPECT_EQ(text_of(Value(std::int64_t{-12})), "-12");
  EXPECT_EQ(text_of(Value(256.147)), "256.1");
  EXPECT_EQ(text_of(Value("focus")), "focus");
}

TEST(Cell, ShowsNumbersInTheFormOfTheirColumn) {
  const auto text = [](std::int64_t number, Format format) {
    return text_of(Value(number), format);
  };
  EXPECT_EQ(text(0x8, Format::hex2), "0x08");
  EXPECT_EQ(text(0x208, Format::hex4), "0208");
  EXPECT_EQ(text(0xE9EAD60E, Format::hex8), "E9EAD60E");
  EXPECT_EQ(text(12, Format::position), "+12");
  EXPECT_EQ(text(-12, Format::position), "-12");
  EXPECT_EQ(text(0, Format::position), "0");
  EXPECT_EQ(text(1'202'900'000, Format::seconds), "1.202 s");
  EXPECT_EQ(text_of(Value("text"), Format::hex4), "text");
}

TEST(Section, WithoutRowsIsNoTable) {
  EXPECT_EQ(text_of(Section{"none", {{"key", "heading"}}}), "");
}

TEST(Section, IsATableUnderItsHeadings) {
  const Section section{"motors",
                        {{"motor", "motor"}, {"position", "position", Format::position}},
                        {{"zoom 1", std::int64_t{250}}, {"focus", Value()}}};
  EXPECT_EQ(text_of(section),
            "  motor   position\n"
            "  zoom 1  +250\n"
            "  focus   -\n");
}

TEST(Section, EveryOneHasAKeyOfItsOwnAndAsManyCellsAsColumns) {
  kelvo::sim::camera::Camera camera;
  camera.fit_module(kelvo::sim::camera::LensModule::de015);
  std::vector<std::string> keys;
  for (const Section& section : kelvo::sim::all_sections(camera)) {
    for (const auto& row : section.rows) EXPECT_EQ(row.size(), section.columns.size());
    for (const std::string& key : keys) EXPECT_NE(key, section.key);
    keys.emplace_back(section.key);
  }
  EXPECT_EQ(keys.size(), 13u);
}

}  // namespace
