// What the runtime sees of the library: entry point, extension object, pages, shutdown.
#include "common/XW_Extension.h"

#include "library_fixture.h"

using EntryPointTest = LibraryTest;

TEST_F(EntryPointTest, PagesHaveRegistriesOfTheirOwn) {
  const InstanceHandle first = runtime->NewListeningPage(R"("ACTION_PLAY")");
  const InstanceHandle second = runtime->NewListeningPage(R"("ACTION_PAUSE")");
  platform().Deliver("ACTION_PAUSE", "");
  EXPECT_EQ(runtime->TakePosted(second).size(), 1U);
  EXPECT_EQ(runtime->TakePosted(first).size(), 0U);
  runtime->Call(first, kListen);
  platform().TakeSent();
  platform().Deliver("ACTION_PAUSE", "");
  EXPECT_EQ(platform().TakeSent(), Texts{"result|not_support"});
}

TEST_F(EntryPointTest, ShutdownDeletesTheExtensionOnce) {
  EXPECT_NE(common::GetCurrentExtension(), nullptr);
  runtime->Shutdown();
  runtime->Shutdown();
  EXPECT_EQ(platform().LogWith("XW_Extension: OnShutdown(").size(), 1U);
  EXPECT_DEATH(common::GetCurrentExtension(),
               R"(common::Extension ?\* ?common::GetCurrentExtension\(\).*!!\(g_extension\) && \"\")");
}
