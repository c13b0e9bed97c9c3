#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The rules for the names of a series of parts. All are pure.

// "film.mov", 1 gives "film.mov.001". The number has at least three digits and as many as it needs.
std::string PartName(const std::string& base, int32_t number);

// The base of a part's name: always its last four characters are cut off, whatever they are. A four-digit part
// therefore gives a base that fits no part; that is accepted.
std::string BaseOfPart(const std::string& partName);

// The names under which browsers keep a part until it has wholly arrived, but for the one below.
std::vector<std::string> DownloadNames(const std::string& partName);

// Whether it is a name that nobody can foresee: eight characters of the browser's choice, put in before the part's
// first point, and ".part". Compares exactly.
bool IsSaltedDownload(const std::string& entryName, const std::string& partName);

// What stands beside a part for as long as a download program still writes the part itself.
std::string ControlFileName(const std::string& partName);

// Head, blank, number, tail, split at the first point and not at the last: "my.film.mov", 1 gives "my 1.film.mov". A
// name without a point is all tail: "film", 1 gives " 1film".
std::string NumberedVariant(const std::string& name, int32_t number);

// How many parts of `partSize` bytes a file of `length` bytes gives: below 1 for a negative size, and more than can
// ever be for a size of 0.
int32_t PartCount(uint64_t length, int32_t partSize);

// Whether an entry counts in the size estimate of the series with that base: a part, or one that is still arriving.
bool BelongsToSeries(const std::string& entryName, const std::string& base);
