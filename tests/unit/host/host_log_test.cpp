#include "host/host_log.h"

#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vexel {
namespace {

TEST(HostLog, ReportsTextsWithTheirUserCode) {
  const auto log = test::New<test::FakeErrorLog>();
  LogReport(log.get(), kLogState, "OnPause(%lu)", 4000000000ul);
  LogReport(log.get(), kLogRate, "x");
  EXPECT_EQ(log->lines, std::vector<std::string>({"14 OnPause(4000000000)", "15 x"}));
  EXPECT_EQ(log->odd, 0) << "severity 7, result 0, no more information";
}

TEST(HostLog, CutsLongTexts) {
  const auto log = test::New<test::FakeErrorLog>();
  LogReport(log.get(), kLogState, "%s", std::string(5000, 'a').c_str());
  EXPECT_EQ(log->lines[0], "14 " + std::string(2047, 'a'));
}

TEST(HostLog, IsSilentWithoutALog) {
  LogReport(nullptr, kLogState, "%s", "nothing");
}

}  // namespace
}  // namespace vexel
