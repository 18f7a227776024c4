#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/support/DataFiles.h"
#include "tests/support/OpenDocument.h"
#include "tests/support/Paths.h"
#include "tests/support/TreeText.h"

namespace tgx::test {

// Documents of real exporters with an exporter's marks in them. tests/data/samples/README.md says of every mark what is
// right.

inline std::string SamplePath(const std::string& file) { return DataPath("samples/" + file); }

/// A sample by the name of its document without the ending.
inline std::string SampleBytes(const std::string& sample) { return ReadBytes(SamplePath(sample + ".pdf")); }

/// A sample as one action makes it, which must succeed and leave a sound file.
inline std::string SampleAfterAction(const std::string& sample, int number, const std::string& path = "") {
  OpenDocument open(SampleBytes(sample));
  EXPECT_EQ(open.Action(number, path), kSuccess);
  std::string saved = open.Save();
  ExpectSound(saved);
  return saved;
}

/// A sample as fixes make it, which must succeed and leave a sound file.
inline std::string SampleAfterFixes(const std::string& sample, std::uint32_t mask) {
  OpenDocument open(SampleBytes(sample));
  EXPECT_EQ(open.Fixups(mask), kSuccess);
  std::string saved = open.Save();
  ExpectSound(saved);
  return saved;
}

}  // namespace tgx::test
