#pragma once

// The version has four parts of 8 bits each: generation, major, minor, patch. Texts live as long as the
// library.
extern "C" {

/// Packs four parts into one number, generation in the highest byte, so that versions compare as numbers.
unsigned int KEL_CALC_VERSION(unsigned char generation, unsigned char major, unsigned char minor,
                              unsigned char patch);
/// The packed version of this library.
unsigned int KEL_GET_VERSION();
/// Unpacks a version into its four parts.
void KEL_CONVERT_VERSION(unsigned int version, unsigned char& generation, unsigned char& major,
                         unsigned char& minor, unsigned char& patch);

/// The four parts with dots between; with `showRevision` the revision follows in parentheses, if it is known.
const char* kelGetVersion(bool showRevision = true);
/// The four parts of the version of this library.
unsigned int kelGetGenerationVersion();
unsigned int kelGetMajorVersion();
unsigned int kelGetMinorVersion();
unsigned int kelGetPatchVersion();
/// Revision of the sources when the build was configured, empty outside a repository.
const char* kelGetRevision();
/// Names of the library and of its makers.
const char* kelGetLibraryName();
const char* kelGetCompanyName();
/// Time of day of the build, "hh:mm:ss".
const char* kelGetBuildTime();
/// Day of the build, "Jan 31 2026", or "2026-01-31" with `iso`.
const char* kelGetBuildDate(bool iso = false);
/// Build type as CMake names it, "Release" for one.
const char* kelGetBuildType();
/// Compiler flags of the C++ sources.
const char* kelGetCppBuildFlags();
/// Compiler flags of C sources.
const char* kelGetCBuildFlags();
}
