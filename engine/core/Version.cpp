#include "kel/Version.h"
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr unsigned char GENERATION = KEL_VERSION_GENERATION;
constexpr unsigned char MAJOR = KEL_VERSION_MAJOR;
constexpr unsigned char MINOR = KEL_VERSION_MINOR;
constexpr unsigned char PATCH = KEL_VERSION_PATCH;

std::string versionText()
{
  return std::to_string(GENERATION) + '.' + std::to_string(MAJOR) + '.' + std::to_string(MINOR) + '.' +
         std::to_string(PATCH);
}

std::string versionAndRevisionText()
{
  const std::string revision = kelGetRevision();
  return revision.empty() ? versionText() : versionText() + " (" + revision + ')';
}

// From the form of the preprocessor, "Jan 31 2026" with a blank before a single-digit day.
std::string isoDate(const char* date)
{
  const char* months = "JanFebMarAprMayJunJulAugSepOctNovDec";
  char month[4] = {};
  unsigned int day = 0, year = 0;
  std::sscanf(date, "%3s %u %u", month, &day, &year);
  const auto number = static_cast<unsigned int>((std::strstr(months, month) - months) / 3 + 1);
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u", year, number, day);
  return text;
}

} // namespace

unsigned int KEL_CALC_VERSION(unsigned char generation, unsigned char major, unsigned char minor,
                              unsigned char patch)
{
  return unsigned(generation) << 24 | unsigned(major) << 16 | unsigned(minor) << 8 | patch;
}

unsigned int KEL_GET_VERSION() { return KEL_CALC_VERSION(GENERATION, MAJOR, MINOR, PATCH); }

void KEL_CONVERT_VERSION(unsigned int version, unsigned char& generation, unsigned char& major,
                         unsigned char& minor, unsigned char& patch)
{
  generation = static_cast<unsigned char>(version >> 24);
  major = static_cast<unsigned char>(version >> 16);
  minor = static_cast<unsigned char>(version >> 8);
  patch = static_cast<unsigned char>(version);
}

const char* kelGetVersion(bool showRevision)
{
  static const std::string plain = versionText();
  static const std::string full = versionAndRevisionText();
  return (showRevision ? full : plain).c_str();
}

unsigned int kelGetGenerationVersion() { return GENERATION; }
unsigned int kelGetMajorVersion() { return MAJOR; }
unsigned int kelGetMinorVersion() { return MINOR; }
unsigned int kelGetPatchVersion() { return PATCH; }
const char* kelGetRevision() { return KEL_REVISION; }
const char* kelGetLibraryName() { return "kel"; }
const char* kelGetCompanyName() { return "kel"; }
const char* kelGetBuildTime() { return __TIME__; }

const char* kelGetBuildDate(bool iso)
{
  static const std::string isoText = isoDate(__DATE__);
  return iso ? isoText.c_str() : __DATE__;
}

const char* kelGetBuildType() { return KEL_BUILD_TYPE; }
const char* kelGetCppBuildFlags() { return KEL_CXX_FLAGS; }
const char* kelGetCBuildFlags() { return KEL_C_FLAGS; }
