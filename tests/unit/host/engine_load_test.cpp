// Loads through the client's file system, step by step.
#include "engine_fixture.h"
#include "host/fake_files.h"

namespace vexel::test {
namespace {

using Lines = std::vector<std::string>;

Bytes TextBytes(const std::string& text) {
  return Bytes(text.begin(), text.end());
}

// A movie with a red box at depth 9 and exactly `size` bytes.
Bytes MovieOf(size_t size) {
  const Bytes plain = BoxMovie(2);
  author::MovieWriter movie(100, 80);
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 10, 10));
  movie.DefineShape(1, box).PlaceObject(1, 9).FrameEnd();
  const size_t room = size - movie.Finish().size() - 2 - 6;
  movie.Tag(999, Bytes(room), author::TagForm::kLong).End();
  return movie.Finish();
}

class EngineLoad : public EngineFixture {
 protected:
  EngineLoad() {
    files.Install(*host.factory);
    files.files["http://host/folder/a.vxf"] = MovieOf(1000);
    files.files["http://host/folder/a.txt"] = TextBytes("x=1&y=two+words");
  }
  ~EngineLoad() override {
    engine->Shutdown();
    files.waiting.clear();
  }
  void Load(const char* url, const char* target, INT32 flags = 0, const char* post = nullptr) {
    engine->GetURL(url, target, post, flags);
  }
  // Time for a frame.
  void Sync() { engine->OnTimeSync(now += 1000); }
  std::string Variable(const char* name) {
    char* text = engine->GetVariable(engine.get(), name);
    const std::string value = text ? text : "(none)";
    FreeStr(text);
    return value;
  }
  std::string LayerStage(int32_t number) {
    ScriptPlayer* layer = FindLayer(engine.get(), number);
    if (!layer || !layer->rootObject) return "(none)";
    std::string depths;
    for (SObject* child = layer->rootObject->firstChild; child; child = child->next) {
      depths += std::to_string(child->depth) + " ";
    }
    return depths;
  }

  FakeFileSystem files;
  UINT32 now = 0;
};

TEST_F(EngineLoad, MovieGoesIntoItsLayerStepByStep) {
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  EXPECT_EQ(files.calls, Lines{"Init"});
  files.Answer(1);
  EXPECT_EQ(files.calls.back(), "GetFileObject http://host/folder/a.vxf");
  EXPECT_EQ(files.contentLength, "none");
  files.Answer(1);
  EXPECT_EQ(files.calls.back(), "Open 5");
  EXPECT_EQ(LayerStage(3), "(none)");
  files.Answer(1);
  EXPECT_EQ(files.calls.back(), "Read 2048");
  ASSERT_NE(FindLayer(engine.get(), 3), nullptr);
  EXPECT_STREQ(FindLayer(engine.get(), 3)->url, "http://host/folder/a.vxf");
  files.Answer(1);
  EXPECT_EQ(files.calls.back(), "Close");
  EXPECT_TRUE(engine->IsLoading());
  files.Answer(1);
  EXPECT_FALSE(engine->IsLoading());
  Sync();
  EXPECT_EQ(LayerStage(3), "9 ");
}

TEST_F(EngineLoad, ReadOf2048BytesAsksForMore) {
  files.files["http://host/folder/b.vxf"] = MovieOf(2048);
  Play(BoxMovie(1));
  Load("b.vxf", "_level3");
  files.Answer(4);
  EXPECT_EQ(files.calls.back(), "Read 2048");
  EXPECT_EQ(std::count(files.calls.begin(), files.calls.end(), "Read 2048"), 2);
  // The next answer is a failure, and ends the load.
  files.Answer(1);
  EXPECT_EQ(files.calls.back(), "Close");
  files.Answer();
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_TRUE(FindLayer(engine.get(), 3)->IsComplete());
}

TEST_F(EngineLoad, LongFilesComeInPieces) {
  files.files["http://host/folder/b.vxf"] = MovieOf(5000);
  Play(BoxMovie(1));
  Load("b.vxf", "_level3");
  files.Answer();
  EXPECT_EQ(std::count(files.calls.begin(), files.calls.end(), "Read 2048"), 3);
  EXPECT_TRUE(FindLayer(engine.get(), 3)->IsComplete());
}

TEST_F(EngineLoad, AnswersInsideTheCallsDoNotNest) {
  files.atOnce = true;
  files.files["http://host/folder/b.vxf"] = MovieOf(20'000'000);
  Play(BoxMovie(1));
  Load("b.vxf", "_level3");
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_TRUE(FindLayer(engine.get(), 3)->IsComplete());
  files.calls.clear();
  Load("a.vxf", "_level4");
  EXPECT_EQ(files.calls, (Lines{"Init", "GetFileObject http://host/folder/a.vxf", "Open 5",
                                "Read 2048", "Close"}));
}

TEST_F(EngineLoad, NextLoadComesBehindTheClose) {
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  files.Answer();
  Load("a.vxf", "_level4");
  files.Answer();
  Sync();
  EXPECT_EQ(LayerStage(3), "9 ");
  EXPECT_EQ(LayerStage(4), "9 ");
}

TEST_F(EngineLoad, VariablesGoToTheirLayer) {
  Play(BoxMovie(1));
  Load("a.txt", "_level0", 128);
  files.Answer(4);
  EXPECT_EQ(Variable("x"), "(none)");
  files.Answer();
  EXPECT_EQ(Variable("x"), "1");
  EXPECT_EQ(Variable("y"), "two words");
}

TEST_F(EngineLoad, QueryOfAMovieBecomesItsVariables) {
  files.files["http://host/folder/a.vxf?q=5"] = MovieOf(1000);
  Play(BoxMovie(1));
  Load("a.vxf?q=5", "_level3");
  files.Answer();
  EXPECT_NE(FindLayer(engine.get(), 3)->FindVariable("q"), nullptr);
}

TEST_F(EngineLoad, QueryOfTheStreamBecomesItsVariables) {
  host.stream->source->url = "http://host/m.vxf?q=5";
  Play(BoxMovie(1));
  EXPECT_EQ(Variable("q"), "5");
  EXPECT_STREQ(engine->url, "http://host/m.vxf?q=5");
}

TEST_F(EngineLoad, StreamWithoutAURLHasNoBase) {
  host.stream->source->url.clear();
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_TRUE(files.calls.empty());
}

TEST_F(EngineLoad, PostWithoutABaseBlocksAllFurtherLoads) {
  host.stream->source->url.clear();
  Play(BoxMovie(1));
  Load("a.vxf", "_level3", 0, "x=1");
  EXPECT_TRUE(engine->IsLoading());
  Load("http://host/folder/a.vxf", "_level3");
  EXPECT_TRUE(files.calls.empty());
}

TEST_F(EngineLoad, MovieGoesIntoASprite) {
  author::MovieWriter movie(100, 80);
  movie.DefineSprite(2, author::TagStream().FrameEnd().End());
  movie.Place({.depth = 4, .character = 2, .name = "sp"});
  movie.FrameEnd().End();
  Play(movie.Finish());
  Load("a.vxf", "/sp", 64);
  files.Answer();
  Sync();
  SObject* object = engine->rootObject->firstChild;
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->character->type, charLoadedMovie);
  EXPECT_STREQ(object->name, "sp");
}

TEST_F(EngineLoad, SpriteThatWentMeanwhileTakesNothing) {
  author::MovieWriter movie(100, 80);
  movie.DefineSprite(2, author::TagStream().FrameEnd().End());
  movie.Place({.depth = 4, .character = 2, .name = "sp"});
  movie.FrameEnd().End();
  Play(movie.Finish());
  Load("a.vxf", "/sp", 64);
  engine->display.RemoveObject(engine->rootObject, 4);
  files.Answer();
  EXPECT_FALSE(engine->IsLoading());
}

TEST_F(EngineLoad, LayerThatIsClearedMeanwhileTakesNoMore) {
  files.files["http://host/folder/b.vxf"] = MovieOf(5000);
  Play(BoxMovie(1));
  Load("b.vxf", "_level3");
  files.Answer(4);
  engine->ClearLayer(3);
  files.Answer();
  EXPECT_FALSE(engine->IsLoading());
  EXPECT_EQ(FindLayer(engine.get(), 3), nullptr);
}

TEST_F(EngineLoad, LoadIntoLayer0ReplacesTheStream) {
  const Bytes movie = BoxMovie(3);
  Play(movie);
  Load("a.vxf", "_level0");
  files.Answer();
  EXPECT_TRUE(engine->loaded);
  Sync();
  EXPECT_EQ(LayerStage(0), "9 ");
  Packet({1, 2, 3, 4, 5});
  EXPECT_EQ(engine->len, engine->scriptLen);
}

// --- POST ---

TEST_F(EngineLoad, PostSendsTheLengthOfItsBody) {
  Play(BoxMovie(1));
  Load("a.vxf", "_level3", 0, "x=1&y=2");
  EXPECT_TRUE(engine->IsLoading());
  files.Answer();
  EXPECT_EQ(files.contentLength, std::string("8\0", 2));
  EXPECT_EQ(std::count(files.calls.begin(), files.calls.end(), "Write"), 0);
  EXPECT_FALSE(engine->IsLoading());
  Sync();
  EXPECT_EQ(LayerStage(3), "9 ");
}

TEST_F(EngineLoad, PostWithoutABufferForItsBodyBlocksAllFurtherLoads) {
  Play(BoxMovie(1));
  host.factory->failAfter = 0;
  Load("a.vxf", "_level3", 0, "x=1");
  host.factory->failAfter = -1;
  EXPECT_TRUE(engine->IsLoading());
  EXPECT_TRUE(files.calls.empty());
  Load("a.vxf", "_level3");
  EXPECT_TRUE(files.calls.empty());
}

// --- Failures ---

TEST_F(EngineLoad, FailedStepsEndTheLoad) {
  for (const char* step : {"Init", "GetFileObject", "Open", "Read"}) {
    for (const char* post : {static_cast<const char*>(nullptr), "x=1"}) {
      Play(BoxMovie(1));
      files.failAt = step;
      Load("a.vxf", "_level3", 0, post);
      EXPECT_TRUE(engine->IsLoading());
      files.Answer();
      EXPECT_FALSE(engine->IsLoading()) << step;
      files.failAt.clear();
      Load("a.vxf", "_level3");
      files.Answer();
      Sync();
      EXPECT_EQ(LayerStage(3), "9 ") << step;
    }
  }
}

TEST_F(EngineLoad, RefusedStepsEndTheLoad) {
  for (const char* step : {"Init", "GetFileObject", "Open", "Read", "Close"}) {
    Play(BoxMovie(1));
    files.refuse = step;
    Load("a.vxf", "_level3");
    files.Answer();
    EXPECT_FALSE(engine->IsLoading()) << step;
    files.refuse.clear();
    Load("a.vxf", "_level3");
    EXPECT_TRUE(engine->IsLoading());
    files.Answer();
    EXPECT_FALSE(engine->IsLoading());
  }
}

TEST_F(EngineLoad, UnknownFileEndsTheLoad) {
  Play(BoxMovie(1));
  Load("none.vxf", "_level3");
  files.Answer();
  EXPECT_FALSE(engine->IsLoading());
}

TEST_F(EngineLoad, MissingServicesEndTheLoad) {
  Play(BoxMovie(1));
  host.factory->makers.clear();
  Load("a.vxf", "_level3");
  EXPECT_FALSE(engine->IsLoading());
  Load("a.vxf", "_level3", 0, "x=1");
  EXPECT_FALSE(engine->IsLoading());
}

TEST_F(EngineLoad, FactoryMayFailAtAnyObject) {
  Play(BoxMovie(1));
  for (int after = 1; after < 6; ++after) {
    host.factory->failAfter = after;
    Load("a.vxf", "_level3", 0, "x=1");
    files.Answer();
    EXPECT_FALSE(engine->IsLoading()) << after;
  }
}

TEST_F(EngineLoad, AnswersInTheWrongStateChangeNothing) {
  Play(BoxMovie(1));
  const Ptr<IZEMBuffer> buffer = MakeBuffer({1, 2, 3});
  const auto wrong = [&](bool init, bool object, bool read, bool close) {
    const auto refused = [](bool asked, auto answer) {
      if (asked) {
        EXPECT_EQ(answer(), ZEM_UNEXPECTED);
      }
    };
    refused(init, [&] { return engine->InitDone(ZEM_OK); });
    refused(object, [&] { return engine->FileObjectReady(ZEM_OK, nullptr); });
    refused(read, [&] { return engine->ReadDone(ZEM_OK, buffer.get()); });
    refused(close, [&] { return engine->CloseDone(ZEM_OK); });
    EXPECT_EQ(engine->WriteDone(ZEM_OK), ZEM_UNEXPECTED);
  };
  for (const char* post : {static_cast<const char*>(nullptr), "x=1"}) {
    wrong(true, true, true, true);
    Load("a.vxf", "_level3", 0, post);
    wrong(false, true, true, true);
    files.Answer(1);
    wrong(true, false, true, true);
    files.Answer(1);
    wrong(false, true, true, true);
    files.Answer(1);
    wrong(true, true, false, true);
    files.Answer(1);
    wrong(true, true, true, false);
    files.Answer(1);
    wrong(true, true, true, true);
    Sync();
    EXPECT_EQ(LayerStage(3), "9 ");
  }
  EXPECT_EQ(engine->SeekDone(ZEM_OK), ZEM_OK);
  EXPECT_EQ(engine->DirObjectReady(ZEM_OK, nullptr), ZEM_NOT_IMPLEMENTED);
}

TEST_F(EngineLoad, ObjectThatIsNoFileEndsTheLoad) {
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  files.Answer(1);
  files.waiting.clear();
  EXPECT_LT(engine->FileObjectReady(ZEM_OK, host.site.get()), 0);
  EXPECT_FALSE(engine->IsLoading());
  Load("a.vxf", "_level3");
  files.Answer(1);
  files.waiting.clear();
  EXPECT_LT(engine->FileObjectReady(ZEM_OK, nullptr), 0);
  EXPECT_FALSE(engine->IsLoading());
}

TEST_F(EngineLoad, AnswerWithoutABufferEndsTheReading) {
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  files.Answer(3);
  files.waiting.clear();
  EXPECT_EQ(engine->ReadDone(ZEM_OK, nullptr), ZEM_OK);
  EXPECT_EQ(files.calls.back(), "Close");
}

// --- The end of the engine ---

TEST_F(EngineLoad, ShutdownEndsALoadInAnyState) {
  for (int answers = 0; answers <= 5; ++answers) {
    for (const char* url : {"a.vxf", "a.txt"}) {
      Play(BoxMovie(1));
      Load(url, "_level3", url[2] == 't' ? 128 : 0);
      files.Answer(answers);
      engine->Shutdown();
      EXPECT_FALSE(engine->IsLoading());
      files.Answer();
      EXPECT_FALSE(engine->IsLoading());
      engine = new CVexelEngine;
      engine->SetDamageManager(&damage);
      engine->SetDeScatterizer(&reassembler);
    }
  }
}

TEST_F(EngineLoad, ServicesLetGoOfTheEngine) {
  const int before = g_alive;
  Play(BoxMovie(1));
  Load("a.vxf", "_level3");
  files.Answer(3);
  engine->Shutdown();
  engine = {};
  files.waiting.clear();
  EXPECT_EQ(g_alive, before);
  engine = new CVexelEngine;
}

}  // namespace
}  // namespace vexel::test
