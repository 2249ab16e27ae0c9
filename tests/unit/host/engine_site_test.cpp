// Drawing on the site, and the events that come from it.
#include "engine_fixture.h"

namespace vexel::test {
namespace {

class EngineSite : public EngineFixture {};

TEST_F(EngineSite, TimeSyncDrawsAndForcesTwoRedraws) {
  Play(BoxMovie(3));
  host.site->damage.clear();
  engine->OnTimeSync(0);
  EXPECT_EQ(host.site->redraws, 2);
  ASSERT_FALSE(host.site->damage.empty());
  EXPECT_TRUE(damage.m_bReadyToDraw);
  // The first sync takes the step to frame 1.
  EXPECT_EQ(Pixel(15, 5), 0xC80000u);
  EXPECT_EQ(Pixel(50, 50), 0xFFFFFFu);
}

}  // namespace
}  // namespace vexel::test
