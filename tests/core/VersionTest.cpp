#include "kel/Version.h"
#include "kel/BuildConfiguration.h"
#include <gtest/gtest.h>
#include <string>

TEST(Version, PartsSurvivePackingAndCompareInOrder)
{
  unsigned char generation = 0, major = 0, minor = 0, patch = 0;
  KEL_CONVERT_VERSION(KEL_CALC_VERSION(1, 2, 250, 4), generation, major, minor, patch);
  EXPECT_EQ(generation, 1);
  EXPECT_EQ(major, 2);
  EXPECT_EQ(minor, 250);
  EXPECT_EQ(patch, 4);
  EXPECT_LT(KEL_CALC_VERSION(1, 255, 255, 255), KEL_CALC_VERSION(2, 0, 0, 0));
  EXPECT_EQ(KEL_GET_VERSION(), KEL_CALC_VERSION(2, 18, 0, 0));
}

TEST(Version, TextsShowParts)
{
  EXPECT_STREQ(kelGetVersion(false), "2.18.0.0");
  EXPECT_EQ(std::string(kelGetVersion()).rfind("2.18.0.0", 0), 0U);
  EXPECT_EQ(std::string(kelGetVersion(true)).find(kelGetRevision()) != std::string::npos, true);
  const std::string iso = kelGetBuildDate(true);
  ASSERT_EQ(iso.size(), 10U);
  EXPECT_EQ(iso.substr(0, 4), std::string(kelGetBuildDate()).substr(7));
  EXPECT_EQ(std::stoi(iso.substr(8)), std::stoi(std::string(kelGetBuildDate()).substr(4, 2)));
}

TEST(BuildConfiguration, NamesEachFeatureAndNothingElse)
{
  using namespace kel;
  EXPECT_STREQ(getBuildConfigurationString(USE_64BIT_ARCHITECTURE), "USE_64BIT_ARCHITECTURE");
  EXPECT_STREQ(getBuildConfigurationString(WINDOWS_PLATFORM), "WINDOWS_PLATFORM");
  EXPECT_STREQ(getBuildConfigurationString(USE_TOLUA), "USE_TOLUA");
  EXPECT_TRUE(isBuiltWith(USE_LUA));
  EXPECT_FALSE(isBuiltWith(WINDOWS_PLATFORM));
  EXPECT_FALSE(isBuiltWith(BuildConfiguration(-1)));
  EXPECT_STREQ(getBuildConfigurationString(NUM_BUILD_CONFIGURATIONS), "");
}

TEST(BuildConfiguration, ThreadsAndStartTick)
{
  using namespace kel;
  setNumThreads(3);
  EXPECT_EQ(getNumThreads(), 3U);
  setNumThreads(0);
  EXPECT_GE(getNumThreads(), 1U);
  setNumThreads(1);
  const UInt64 before = getStartTick();
  EXPECT_GT(before, 0U);
  resetStartTick();
  EXPECT_GT(getStartTick(), before);
}
