// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "AppUtil.h"

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace {

// Answers from a flag of its own, as a host with a "Stop" button would.
class HostUtil : public AppUtil
{
public:
  [[nodiscard]] bool interrupt() const override { return mStop; }

  bool mStop = false;
};

class AppUtilTest : public ::testing::Test
{
protected:
  void TearDown() override
  {
    AppUtil::set_instance(nullptr);
    AppUtil::instance()->set_interrupt(false);
  }
};

TEST_F(AppUtilTest, HasABuiltInInstanceFromTheStart)
{
  ASSERT_NE(AppUtil::instance(), nullptr);
  EXPECT_EQ(AppUtil::instance(), AppUtil::instance());
  EXPECT_FALSE(AppUtil::instance()->interrupt());
}

TEST_F(AppUtilTest, TheFlagStaysUntilItIsSetBack)
{
  AppUtil* app = AppUtil::instance();
  app->set_interrupt(true);
  EXPECT_TRUE(app->interrupt());
  EXPECT_TRUE(app->interrupt()) << "reading must not clear it";
  app->set_interrupt(false);
  EXPECT_FALSE(app->interrupt());
}

TEST_F(AppUtilTest, EveryInstanceHasItsOwnFlag)
{
  AppUtil other;
  other.set_interrupt(true);
  EXPECT_TRUE(other.interrupt());
  EXPECT_FALSE(AppUtil::instance()->interrupt());
}

TEST_F(AppUtilTest, AHostAnswersFromItsOwnFlag)
{
  HostUtil host;
  AppUtil::set_instance(&host);
  ASSERT_EQ(AppUtil::instance(), &host);
  EXPECT_FALSE(AppUtil::instance()->interrupt());
  host.mStop = true;
  EXPECT_TRUE(AppUtil::instance()->interrupt());
  // The built-in flag has no say any more.
  host.mStop = false;
  AppUtil::instance()->set_interrupt(true);
  EXPECT_FALSE(AppUtil::instance()->interrupt());
}

TEST_F(AppUtilTest, InstallingReturnsTheOneBefore)
{
  AppUtil* built_in = AppUtil::instance();
  HostUtil first;
  HostUtil second;
  EXPECT_EQ(AppUtil::set_instance(&first), built_in);
  EXPECT_EQ(AppUtil::set_instance(&second), &first);
  EXPECT_EQ(AppUtil::set_instance(&second), &second);
  EXPECT_EQ(AppUtil::set_instance(nullptr), &second);
  EXPECT_EQ(AppUtil::set_instance(nullptr), built_in);
  EXPECT_EQ(AppUtil::instance(), built_in);
}

TEST_F(AppUtilTest, GivingBackTheBuiltInInstanceRestoresIt)
{
  HostUtil host;
  AppUtil* before = AppUtil::set_instance(&host);
  EXPECT_EQ(AppUtil::set_instance(before), &host);
  EXPECT_EQ(AppUtil::instance(), before);
}

TEST_F(AppUtilTest, ADestroyedInstanceGivesWayToTheBuiltInOne)
{
  AppUtil* built_in = AppUtil::instance();
  auto host = std::make_unique<HostUtil>();
  AppUtil::set_instance(host.get());
  host.reset();
  EXPECT_EQ(AppUtil::instance(), built_in);
  EXPECT_FALSE(AppUtil::instance()->interrupt());
}

TEST_F(AppUtilTest, DestroyingAnotherInstanceChangesNothing)
{
  HostUtil host;
  {
    HostUtil replaced;
    AppUtil::set_instance(&replaced);
    AppUtil::set_instance(&host);
  }
  EXPECT_EQ(AppUtil::instance(), &host);
}

TEST_F(AppUtilTest, AnotherThreadMaySetTheFlag)
{
  AppUtil* app = AppUtil::instance();
  std::thread other([app] { app->set_interrupt(true); });
  while (!app->interrupt()) {
    std::this_thread::yield();
  }
  other.join();
  EXPECT_TRUE(app->interrupt());
}

AppUtil* gSignalled = nullptr;

TEST_F(AppUtilTest, ASignalHandlerMaySetTheFlag)
{
  gSignalled = AppUtil::instance();
  const auto before = std::signal(SIGINT, [](int) { gSignalled->set_interrupt(true); });
  ASSERT_NE(before, SIG_ERR);
  std::raise(SIGINT);
  std::signal(SIGINT, before);
  EXPECT_TRUE(AppUtil::instance()->interrupt());
}

} // namespace
