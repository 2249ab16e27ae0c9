// The context menu, and what the user's quality allows.
#include "engine_fixture.h"

namespace vexel::test {
namespace {

class EngineMenu : public EngineFixture {
 protected:
  void Quality(const std::string& text) { host.preferences->values["Quality"] = text; }
};

TEST_F(EngineMenu, IsFilledOnce) {
  Init();
  EXPECT_EQ(host.menu->entries,
            (std::vector<std::string>{"Vexel Commands", "20042 Zoom In", "20030 Zoom Out",
                                      "20046 100%", "20034 Show All", "-", "20028 High Quality",
                                      "-", "20044 About Tanderon Vexel..."}));
  EXPECT_EQ(host.menu->response, static_cast<IZEMContextMenuResponse*>(engine.get()));
}

TEST_F(EngineMenu, InitNeedsAContextWithAFactory) {
  EXPECT_EQ(engine->InitPlugin(nullptr), ZEM_BAD_ARGUMENT);
  host.Without(IID_IZEMCommonClassFactory);
  EXPECT_EQ(engine->InitPlugin(host.context.get()), ZEM_NO_INTERFACE);
}

TEST_F(EngineMenu, ContextThatOffersNothingElseWillDo) {
  for (const ZEMID& id : {IID_IZEMContextMenu, IID_IZEMPreferences, IID_IZEMHyperNavigate,
                          IID_IZEMErrorMessages, IID_IZEMScheduler, IID_IZEMUpgradeCollection}) {
    host.Without(id);
  }
  Play(BoxMovie(3), 0);
  engine->OnTimeSync(0);
  engine->GetURL("http://a/b", "_self", nullptr, 0);
  EXPECT_EQ(engine->OnCommand(20044), ZEM_OK);
  EXPECT_EQ(Pixel(15, 5), 0xC80000u);
}

TEST_F(EngineMenu, ContextThatOffersNothingIsRefused) {
  host.context->others.clear();
  EXPECT_LT(engine->InitPlugin(host.context.get()), 0);
  EXPECT_EQ(engine->StartStream(host.stream.get(), host.player.get()), ZEM_OK);
  EXPECT_EQ(engine->OnHeader(Header(kNonLinear, BoxMovie(2)).get()), ZEM_OK);
  engine->GetURL("a.vxf", "_level3", nullptr, 0);
  EXPECT_FALSE(engine->IsLoading());
}

TEST_F(EngineMenu, Quality1KeepsHighQualityOff) {
  Quality("1");
  Play(BoxMovie(1));
  EXPECT_FALSE(engine->highQuality);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(engine->OnCommand(20028), ZEM_OK);
    EXPECT_FALSE(engine->highQuality);
  }
}

TEST_F(EngineMenu, Quality2LeavesItFree) {
  Quality("2");
  Play(BoxMovie(1));
  EXPECT_TRUE(engine->highQuality);
  engine->OnCommand(20028);
  EXPECT_FALSE(engine->highQuality);
  engine->OnCommand(20028);
  EXPECT_TRUE(engine->highQuality);
}

TEST_F(EngineMenu, NoPreferenceLeavesItFree) {
  for (int round = 0; round < 3; ++round) {
    host.preferences->missingIsNull = round == 1;
    if (round == 2) host.Without(IID_IZEMPreferences);
    UINT16 quality = 4;
    EXPECT_EQ(engine->InitPlugin(host.context.get()), ZEM_OK);
    EXPECT_EQ(engine->GetQualityPreference(quality), ZEM_OK);
    EXPECT_EQ(quality, 4);
    EXPECT_TRUE(engine->highQuality);
  }
}

TEST_F(EngineMenu, QualityWithoutAContextIsUnexpected) {
  UINT16 quality = 3;
  EXPECT_EQ(engine->GetQualityPreference(quality), ZEM_UNEXPECTED);
  EXPECT_EQ(quality, 3);
}

TEST_F(EngineMenu, QualityThatIsNoNumberIs0) {
  Init();
  UINT16 quality = 4;
  for (const char* text : {"", "best", "-", " x3"}) {
    Quality(text);
    quality = 4;
    engine->GetQualityPreference(quality);
    EXPECT_EQ(quality, 0) << text;
  }
  host.preferences->terminated = false;
  Quality("3");
  engine->GetQualityPreference(quality);
  EXPECT_EQ(quality, 3);
}

TEST_F(EngineMenu, ChoiceByHandEndsTheGovernor) {
  Play(BoxMovie(1));
  engine->autoQuality = true;
  engine->OnCommand(20028);
  EXPECT_FALSE(engine->autoQuality);
}

TEST_F(EngineMenu, CommandsAreShownAtOnce) {
  Play(BoxMovie(1));
  engine->Update(3);
  engine->Update(3);
  host.site->redraws = 0;
  engine->OnCommand(20028);
  EXPECT_EQ(host.site->redraws, 2);
}

TEST_F(EngineMenu, Command20029DoesNothing) {
  Play(BoxMovie(1));
  const size_t damaged = host.site->damage.size();
  for (UINT16 id : {20029, 20027, 20047, 20043, 0, 65535}) {
    EXPECT_EQ(engine->OnCommand(id), ZEM_OK);
  }
  EXPECT_EQ(host.site->redraws, 0);
  EXPECT_EQ(host.site->damage.size(), damaged);
}

TEST_F(EngineMenu, ZoomInHalvesWhatIsShownAroundTheMiddle) {
  Play(BoxMovie(1));
  engine->OnTimeSync(0);
  engine->OnCommand(20042);
  EXPECT_EQ(engine->zoomRect.xmax - engine->zoomRect.xmin, 1000);
  EXPECT_EQ(engine->zoomRect.ymax - engine->zoomRect.ymin, 800);
  EXPECT_EQ(engine->zoomRect.xmin, 500);
  EXPECT_EQ(engine->zoomRect.ymin, 400);
  engine->OnCommand(20030);
  EXPECT_TRUE(RectIsEmpty(&engine->zoomRect));
}

TEST_F(EngineMenu, FullSizeAndShowAllChooseTheScale) {
  Play(BoxMovie(1));
  engine->OnTimeSync(0);
  engine->OnCommand(20046);
  EXPECT_EQ(engine->scaleMode, kScaleFixed);
  engine->OnCommand(20034);
  EXPECT_EQ(engine->scaleMode, kScaleFit);
}

TEST_F(EngineMenu, AboutNavigatesAndShowsNothing) {
  Play(BoxMovie(1));
  EXPECT_EQ(engine->OnCommand(20044), ZEM_OK);
  ASSERT_EQ(host.navigate->visits.size(), 1u);
  EXPECT_TRUE(host.navigate->visits[0].ends_with(" _top"));
  EXPECT_EQ(host.site->redraws, 0);
}

TEST_F(EngineMenu, CancelDoesNothing) {
  EXPECT_EQ(engine->OnCanceled(), ZEM_OK);
}

TEST_F(EngineMenu, PluginInfoIsThereBeforeAnyCall) {
  INT32 multiple = 0;
  const char *description = nullptr, *copyright = nullptr, *more = nullptr;
  UINT32 version = 0;
  EXPECT_EQ(CVexelEngine::GetPluginInfo(multiple, description, copyright, more, version), ZEM_OK);
  EXPECT_EQ(multiple, 1);
  EXPECT_EQ(version, 0x6000747Eu);
  EXPECT_NE(*description, 0);
  EXPECT_NE(*copyright, 0);
  EXPECT_NE(*more, 0);
}

}  // namespace
}  // namespace vexel::test
