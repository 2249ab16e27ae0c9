// What movies ask for by an address.
#include "engine_fixture.h"
#include "host/fake_files.h"

namespace vexel::test {
namespace {

using Lines = std::vector<std::string>;

class FakeListenSocket final : public Fake<IZEMListenSocket> {
 public:
  FakeListenSocket() : Fake(IID_IZEMListenSocket) {}
  INT32 Listen(UINT32, UINT16, IZEMListenResponse* newResponse) override {
    response = newResponse;
    return ZEM_OK;
  }

 private:
  Ptr<IZEMListenResponse> response;
};

class FakeNetwork final : public Fake<IZEMNetworkServices> {
 public:
  FakeNetwork() : Fake(IID_IZEMNetworkServices) {}
  INT32 CreateTCPSocket(IZEMTCPSocket*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 CreateUDPSocket(IUnknown*&) override { return ZEM_NOT_IMPLEMENTED; }
  INT32 CreateListenSocket(IZEMListenSocket*& socket) override {
    ++sockets;
    socket = new FakeListenSocket;
    socket->AddRef();
    return ZEM_OK;
  }

  int sockets = 0;
};

class EngineUrl : public EngineFixture {
 protected:
  EngineUrl() { files.Install(*host.factory); }
  ~EngineUrl() override {
    engine->Shutdown();
    files.waiting.clear();
  }
  void Go(const char* url, const char* target, const char* postData = nullptr, INT32 flags = 0) {
    engine->GetURL(url, target, postData, flags);
  }
  static std::string Relative(const char* base, const char* url) {
    char* made = CVexelEngine::BuildRelative(base, url);
    const std::string text = made ? made : "(null)";
    FreeStr(made);
    return text;
  }
  static std::string Created(const char* base, const char* url, const char* before = "before") {
    char* made = CreateStr(before);
    CVexelEngine::CreateURL(base, url, made);
    const std::string text = made ? made : "(null)";
    FreeStr(made);
    return text;
  }
  // A movie with the sprite "sp" at depth 4.
  void PlaySprite() {
    author::MovieWriter movie(100, 80);
    movie.DefineSprite(2, author::TagStream().FrameEnd().End());
    movie.Place({.depth = 4, .character = 2, .name = "sp"});
    movie.FrameEnd().End();
    Play(movie.Finish());
  }

  FakeFileSystem files;
};

// --- Commands ---

TEST_F(EngineUrl, HoldCommandIgnoresTheCaseOfItsName) {
  Init();
  Go("vxcommand:hold=n", "x");
  EXPECT_EQ(engine->HoldMode(), 0);
  Go("VXCOMMAND:HOLD=d", nullptr);
  EXPECT_EQ(engine->HoldMode(), 1);
  Go("VXCommand:Hold=always", "_level1");
  EXPECT_EQ(engine->HoldMode(), 2);
}

TEST_F(EngineUrl, OtherHoldValuesChangeNothing) {
  Init();
  for (const char* url : {"VXCommand:Hold=x", "VXCommand:Hold=", "VXCommand:Hold", "VXCommand:"}) {
    Go(url, nullptr);
    EXPECT_EQ(engine->HoldMode(), 2) << url;
  }
}

TEST_F(EngineUrl, UnknownCommandsEndThere) {
  Init();
  Go("VXCommand:Fly=1", "_self");
  Go("VXCommand:Fly=1", "_kest");
  EXPECT_TRUE(host.navigate->visits.empty());
  EXPECT_TRUE(host.player->calls.empty());
}

// --- The client's player ---

TEST_F(EngineUrl, TargetOfThePlayerInCapitalsOpensThere) {
  Init();
  Go("http://a/b", "_KEST");
  EXPECT_EQ(host.player->calls, (Lines{"OpenURL http://a/b", "Begin"}));
  EXPECT_TRUE(host.navigate->visits.empty());
}

TEST_F(EngineUrl, TargetOfThePlayerIsAPrefix) {
  Init();
  Go("http://a/b", "_kestplayer", "x=1", 64);
  EXPECT_EQ(host.player->calls.size(), 2u);
}

TEST_F(EngineUrl, WithoutAPlayerNothingIsOpened) {
  EXPECT_EQ(engine->InitPlugin(host.context.get()), ZEM_OK);
  Go("http://a/b", "_kest");
  EXPECT_TRUE(host.navigate->visits.empty());
}

// --- Navigation ---

TEST_F(EngineUrl, EmptyTargetGoesOutAsSelf) {
  Init();
  Go("http://a/b", "");
  Go("http://a/c", nullptr);
  EXPECT_EQ(host.navigate->visits, (Lines{"http://a/b _self", "http://a/c _self"}));
}

TEST_F(EngineUrl, OtherTargetsGoOutAsTheyAre) {
  Init();
  Go("page.html", "_top");
  EXPECT_EQ(host.navigate->visits, Lines{"page.html _top"});
}

TEST_F(EngineUrl, EmptyURLGoesNowhere) {
  Init();
  Go("", "_top");
  Go(nullptr, "_top");
  EXPECT_TRUE(host.navigate->visits.empty());
}

TEST_F(EngineUrl, WithoutABrowserNothingHappens) {
  host.Without(IID_IZEMHyperNavigate);
  Init();
  Go("http://a/b", "_top");
  Go("http://a/b", "_top", "x=1");
}

TEST_F(EngineUrl, DataGoesIntoTheBrowserByAPageOfOurs) {
  const Ptr<FakeNetwork> network = New<FakeNetwork>();
  host.context->others[IID_IZEMNetworkServices] = Ptr<IUnknown>(network.get());
  Init();
  Go("http://a/b", "frame", "x=1");
  Go("https://a/b", "frame", "x=2");
  ASSERT_EQ(host.navigate->visits.size(), 2u);
  for (const std::string& visit : host.navigate->visits) {
    EXPECT_TRUE(visit.starts_with("http://127.0.0.1:")) << visit;
    EXPECT_TRUE(visit.ends_with(".html frame")) << visit;
  }
  EXPECT_EQ(network->sockets, 1);
}

TEST_F(EngineUrl, RequestsAreReported) {
  Init();
  Go("http://a/b", "frame");
  EXPECT_TRUE(Logged("14 DoGetURLNotify(http://a/b,frame,0x00000000)\n"));
  Go(nullptr, "frame", "x=1");
  EXPECT_TRUE(Logged("14 DoPostURLNotify(NULL,frame,4,x=1,0x00000000)\n"));
}

TEST_F(EngineUrl, LoadsAreReportedWithTheirPointer) {
  Play(BoxMovie(1));
  Go("b.vxf", "_level3");
  const std::string start = "14 DoGetURLNotify(b.vxf,NULL,0x";
  bool found = false;
  for (const std::string& line : host.log->lines) {
    found |= line.starts_with(start) && line.size() == start.size() + 8 + 2;
  }
  EXPECT_TRUE(found);
}

TEST_F(EngineUrl, LongURLsAreCutInTheLogOnly) {
  Init();
  const std::string url = "http://a/" + std::string(5000, 'b');
  Go(url.c_str(), "_top");
  EXPECT_EQ(host.navigate->visits, Lines{url + " _top"});
  EXPECT_EQ(host.log->lines.back().size(), 3u + 2047u);
}

// --- Layers and sprites ---

TEST_F(EngineUrl, EmptyURLClearsALayerAndLoadsNothing) {
  Play(BoxMovie(1));
  engine->OpenLayer(3, false);
  EXPECT_NE(FindLayer(engine.get(), 3), nullptr);
  Go("", "_level3");
  EXPECT_EQ(FindLayer(engine.get(), 3), nullptr);
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_TRUE(files.calls.empty());
}

TEST_F(EngineUrl, SecondLoadDoesNothingButItsLayerIsCleared) {
  Play(BoxMovie(1));
  engine->OpenLayer(3, false);
  engine->OpenLayer(4, false);
  Go("a.vxf", "_level3");
  EXPECT_EQ(files.calls, Lines{"Init"});
  EXPECT_EQ(FindLayer(engine.get(), 3), nullptr);
  Go("b.vxf", "_level4");
  EXPECT_EQ(files.calls, Lines{"Init"});
  EXPECT_EQ(FindLayer(engine.get(), 4), nullptr);
  EXPECT_TRUE(Logged("14 Dropped the load of b.vxf: another one is running"));
}

TEST_F(EngineUrl, SecondPostLoadIsDroppedToo) {
  Play(BoxMovie(1));
  Go("a.vxf", "_level3");
  Go("b.vxf", "_level4", "x=1");
  EXPECT_EQ(files.calls, Lines{"Init"});
}

TEST_F(EngineUrl, LoadOfVariablesLeavesTheLayer) {
  Play(BoxMovie(1));
  engine->OpenLayer(3, false);
  Go("a.txt", "_level3", nullptr, 128);
  EXPECT_NE(FindLayer(engine.get(), 3), nullptr);
  EXPECT_TRUE(engine->IsLoading());
}

TEST_F(EngineUrl, LoadIntoASpriteEmptiesIt) {
  PlaySprite();
  ASSERT_NE(engine->FindTarget(engine->rootObject, "/sp"), nullptr);
  Go("a.vxf", "/sp", nullptr, 64);
  EXPECT_TRUE(engine->IsLoading());
  EXPECT_EQ(engine->rootObject->firstChild->character->id, kEmptySpriteId);
}

TEST_F(EngineUrl, LoadIntoASpriteThatIsNotThereEnds) {
  PlaySprite();
  Go("a.vxf", "/none", nullptr, 64);
  Go("a.vxf", nullptr, nullptr, 64 | 128);
  EXPECT_FALSE(engine->IsLoading() && files.calls.empty());
}

TEST_F(EngineUrl, SecurePostIntoTheMovieIsAborted) {
  Play(BoxMovie(1));
  Go("HTTPS://a/b", "_level3", "x=1");
  EXPECT_TRUE(Logged("14 Aborted an attempt to do secure POST destined for renderer!!!"));
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_TRUE(files.calls.empty());
  // A secure load without data is as good as any other.
  Go("https://a/b", "_level3");
  EXPECT_TRUE(engine->IsLoading());
}

// --- Addresses ---

TEST_F(EngineUrl, CreateURLReplacesWhatFollowsTheLastSlash) {
  EXPECT_EQ(Created("a://h/b/c", "d"), "a://h/b/d");
  EXPECT_EQ(Created("a://h/b/", "d"), "a://h/b/d");
  EXPECT_EQ(Created("a://h/b/c", "../d"), "a://h/b/../d");
  EXPECT_EQ(Created("a://h/b/c", "/d"), "a://h/b//d");
}

TEST_F(EngineUrl, CreateURLTakesTheLastBackslashToo) {
  EXPECT_EQ(Created("c:\\x\\y.vxf", "d"), "c:\\x\\d");
  EXPECT_EQ(Created("c:\\x/y\\z", "d"), "c:\\x/y\\d");
  EXPECT_EQ(Created("c:\\x\\y/z", "d"), "c:\\x\\y/d");
}

TEST_F(EngineUrl, CreateURLWithoutAFolderIsTheURL) {
  EXPECT_EQ(Created("x", "y"), "y");
  EXPECT_EQ(Created("", "y"), "y");
  EXPECT_EQ(Created("a://h/b", "e://f"), "e://f");
}

TEST_F(EngineUrl, CreateURLOfNothingLeavesAllAsItWas) {
  EXPECT_EQ(Created(nullptr, "y"), "before");
  EXPECT_EQ(Created("x", nullptr), "before");
  EXPECT_EQ(Created(nullptr, nullptr, nullptr), "(null)");
}

TEST_F(EngineUrl, CreateURLTakesBasesOfAnyLength) {
  const std::string folder = "a://" + std::string(3000, 'b') + "/";
  EXPECT_EQ(Created((folder + "c").c_str(), "d"), folder + "d");
}

TEST_F(EngineUrl, BuildRelativeResolvesFolders) {
  EXPECT_EQ(Relative("a://h/b/c", "../d"), "a://h/d");
  EXPECT_EQ(Relative("a://h/b/c", "/d"), "a://h/d");
  EXPECT_EQ(Relative("a://h/b/c", "d"), "a://h/b/d");
  EXPECT_EQ(Relative("a://h/b/c", "../../../d"), "a://h/d");
  EXPECT_EQ(Relative("a://h/b/c/e/f", "../../d"), "a://h/b/d");
}

TEST_F(EngineUrl, BuildRelativeTakesAFolderOffABaseThatEndsInASlash) {
  EXPECT_EQ(Relative("a://h/b/", "d"), "a://h/d");
}

TEST_F(EngineUrl, BuildRelativeKeepsWholeURLs) {
  EXPECT_EQ(Relative("a://h/b", "e://f/g"), "e://f/g");
  EXPECT_EQ(Relative("a://h/b", "mailto:x"), "mailto:x");
  EXPECT_EQ(Relative("a://h/b/c", "d/e:f"), "a://h/b/d/e:f");
}

TEST_F(EngineUrl, BuildRelativeAddsASlashBehindAMachine) {
  EXPECT_EQ(Relative("a://h", "d"), "a://h/d");
  EXPECT_EQ(Relative("a://h", "/d"), "a://h/d");
  EXPECT_EQ(Relative("a://h", "../d"), "a://h/d");
}

TEST_F(EngineUrl, BuildRelativeTakesPathsToo) {
  EXPECT_EQ(Relative("b/c", "d"), "b/d");
  EXPECT_EQ(Relative("b/c", "/d"), "d");
  EXPECT_EQ(Relative("", ""), "");
  EXPECT_EQ(Relative(nullptr, "d"), "(null)");
  EXPECT_EQ(Relative("b", nullptr), "(null)");
}

}  // namespace
}  // namespace vexel::test
