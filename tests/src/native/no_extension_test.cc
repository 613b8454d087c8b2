// A library that has no extension to offer refuses to start and makes no pages.
#include <gtest/gtest.h>

#include "common/XW_Extension.h"
#include "library_fixture.h"

common::Extension* CreateExtension() {
  return nullptr;
}

TEST(NoExtension, InitialisationFailsWithOneErrorLine) {
  fake::Platform::Reset();
  fake::Runtime runtime;
  EXPECT_EQ(runtime.status, -1);
  const auto& log = fake::Platform::Get().log;
  ASSERT_EQ(log.size(), 3U);
  EXPECT_EQ(log[1].priority, 6);
  EXPECT_EQ(log[1].tag, "CORVI_PLUGINS");
  EXPECT_THAT(log[1].text,
              testing::MatchesRegex(R"(XW_Extension: XW_Initialize\([0-9]+\) > Can't initialize extension: )"
                                    R"(CreateExtension\(\) returned NULL\.)"));
}
