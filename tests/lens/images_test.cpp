#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "kelvo.h"

namespace {

TEST(ProgramImages, AreDeclaredWithTheirSizes) {
  EXPECT_EQ(sizeof CORVO_PROGRAM_DATA_DE015, 33276U);
  EXPECT_EQ(sizeof CORVO_PROGRAM3_DATA_DE015, 1228U);
  EXPECT_EQ(sizeof CORVO_PROGRAM2_DATA_DE015, 944U);
  EXPECT_EQ(sizeof CORVO_PROGRAM_DATA_DF033, 35000U);
  EXPECT_EQ(sizeof CORVO_PROGRAM3_DATA_DF033, 1160U);
  EXPECT_EQ(sizeof CORVO_PROGRAM2_DATA_DF033, 648U);
  EXPECT_EQ(sizeof CORVO_PROGRAM_DATA_T5391, 33000U);
  EXPECT_EQ(sizeof CORVO_PROGRAM3_DATA_T5391, 1160U);
  EXPECT_EQ(sizeof CORVO_PROGRAM2_DATA_T5391, 648U);
}

TEST(ProgramImages, OfTheSmallMemoriesAreEqualOnDf033AndT5391) {
  EXPECT_EQ(std::memcmp(CORVO_PROGRAM3_DATA_DF033, CORVO_PROGRAM3_DATA_T5391, 1160), 0);
  EXPECT_EQ(std::memcmp(CORVO_PROGRAM2_DATA_DF033, CORVO_PROGRAM2_DATA_T5391, 648), 0);
}

TEST(ProgramImages, ShareNoByteWithOneAnother) {
  struct Extent {
    const std::uint8_t* begin;
    std::size_t size;
  };
  const Extent images[9] = {
      {CORVO_PROGRAM_DATA_DE015, 33276}, {CORVO_PROGRAM3_DATA_DE015, 1228},
      {CORVO_PROGRAM2_DATA_DE015, 944},  {CORVO_PROGRAM_DATA_DF033, 35000},
      {CORVO_PROGRAM3_DATA_DF033, 1160}, {CORVO_PROGRAM2_DATA_DF033, 648},
      {CORVO_PROGRAM_DATA_T5391, 33000}, {CORVO_PROGRAM3_DATA_T5391, 1160},
      {CORVO_PROGRAM2_DATA_T5391, 648},
  };
  for (int i = 0; i < 9; ++i) {
    for (int j = 0; j < 9; ++j) {
      if (i == j) continue;
      const bool apart = images[i].begin + images[i].size <= images[j].begin ||
                         images[j].begin + images[j].size <= images[i].begin;
      EXPECT_TRUE(apart) << i << " and " << j;
    }
  }
}

TEST(ProgramImages, OfTheThreeModulesDiffer) {
  EXPECT_NE(std::memcmp(CORVO_PROGRAM_DATA_DE015, CORVO_PROGRAM_DATA_DF033, 33000), 0);
  EXPECT_NE(std::memcmp(CORVO_PROGRAM_DATA_DF033, CORVO_PROGRAM_DATA_T5391, 33000), 0);
  EXPECT_NE(std::memcmp(CORVO_PROGRAM_DATA_T5391, CORVO_PROGRAM_DATA_DE015, 33000), 0);
}

}  // namespace
