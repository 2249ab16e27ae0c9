#include "client/stream/delivery_options.h"

#include <gtest/gtest.h>

#include <CLI/CLI.hpp>

namespace vexel::client {
namespace {

class DeliveryOptionsTest : public testing::Test {
 protected:
  DeliveryOptionsTest() { options.AddTo(&app); }
  void Parse(const std::string& line) { app.parse(line); }
  // Why a command line is wrong; empty if it isn't.
  std::string Refusal(const std::string& line) {
    try {
      Parse(line);
    } catch (const CLI::ParseError& error) {
      return error.what();
    }
    return "";
  }
  CLI::App app;
  DeliveryOptions options;
};

TEST_F(DeliveryOptionsTest, WithoutAnyTheStreamIsNonLinearAndTheNetworkGood) {
  Parse("");
  EXPECT_FALSE(options.given());
  const DeliverySetup setup = options.Setup();
  EXPECT_FALSE(setup.linear);
  EXPECT_EQ(setup.packetBytes, 1400u);
  EXPECT_EQ(setup.keyEveryMs, 2000u);
  EXPECT_EQ(setup.leadMs, 5000u);
  EXPECT_EQ(setup.jitterMs, 200u);
  EXPECT_TRUE(setup.resends);
  EXPECT_EQ(setup.network.loss, 0);
  EXPECT_EQ(setup.network.delayMs, 0u);
  EXPECT_EQ(setup.network.seed, 1u);
}

TEST_F(DeliveryOptionsTest, AllAreTakenOver) {
  Parse(
      "--mode linear --packet 700 --key 300 --lead 10 --jitter 20 --loss 12.5 --drop 3,7,10-12 "
      "--reorder 1 --duplicate 2 --answer-loss 3 --delay 40 --seed 4294967295 --no-resends");
  const DeliverySetup setup = options.Setup();
  EXPECT_TRUE(setup.linear);
  EXPECT_EQ(setup.packetBytes, 700u);
  EXPECT_EQ(setup.keyEveryMs, 300u);
  EXPECT_EQ(setup.leadMs, 10u);
  EXPECT_EQ(setup.jitterMs, 20u);
  EXPECT_FALSE(setup.resends);
  EXPECT_EQ(setup.network.loss, 0.125);
  EXPECT_EQ(setup.network.drop, (std::set<uint32_t>{3, 7, 10, 11, 12}));
  EXPECT_EQ(setup.network.reorder, 0.01);
  EXPECT_EQ(setup.network.duplicate, 0.02);
  EXPECT_EQ(setup.network.answerLoss, 0.03);
  EXPECT_EQ(setup.network.delayMs, 40u);
  EXPECT_EQ(setup.network.seed, 4294967295u);
}

TEST_F(DeliveryOptionsTest, AnyOfThemCountsAsGiven) {
  for (const char* line :
       {"--mode nonlinear", "--loss 0", "--drop 1", "--no-resends", "--seed 1"}) {
    Parse(line);
    EXPECT_TRUE(options.given()) << line;
  }
  EXPECT_FALSE(options.Setup().linear);
}

TEST_F(DeliveryOptionsTest, WrongValuesAreRefusedByName) {
  for (const char* line : {"--mode sideways", "--packet 63", "--packet 65536", "--key -1",
                           "--lead x", "--jitter 1.5", "--loss 101", "--loss nan", "--loss 5%",
                           "--drop 3-1", "--drop 1,,2", "--drop x", "--reorder -1", "--duplicate",
                           "--answer-loss x", "--delay 86400001", "--seed 4294967296"}) {
    const std::string name = std::string(line).substr(0, std::string(line).find(' '));
    EXPECT_NE(Refusal(line).find(name), std::string::npos) << line << ": " << Refusal(line);
  }
}

}  // namespace
}  // namespace vexel::client
