// A client that calls back where it shouldn't: from inside each operation that
// the plug-in asks it for, one after the other, with each call that could do
// harm. Nothing may crash, and in the end everything must have been let go.
#include <gtest/gtest.h>

#include "host/fake_files.h"
#include "host/session.h"

namespace vexel {
namespace {

using author::ActionBuilder;
using author::MovieWriter;
using test::Bytes;
using test::FramedFile;
using test::Ptr;
using test::Session;

// Loads another movie, and asks for a page and for the client's player.
Bytes AskingMovie() {
  MovieWriter movie(60, 40, 10);
  author::ShapeBuilder box;
  box.Style(box.AddFill(author::Color{200, 0, 0})).Rectangle(author::Rect::Pixels(0, 0, 30, 20));
  movie.DefineShape(1, box);
  movie.PlaceObject(1, 1).FrameEnd();
  movie.FrameActions(ActionBuilder().GetURL("a.vxf", "_level1").Finish()).FrameEnd();
  movie.FrameActions(ActionBuilder().GetURL("http://a/b", "_top").Finish()).FrameEnd();
  movie.FrameActions(ActionBuilder().GetURL("http://a/b", "_kest").Finish()).FrameEnd();
  movie.Move(1, author::Matrix::Translate(200, 0)).FrameEnd();
  movie.End();
  return movie.Finish();
}

class MeddlingClient {
 public:
  MeddlingClient() {
    files_.Install(*session_->host.factory);
    files_.files["http://host/folder/a.vxf"] = test::SlidingBox(3);
  }
  ~MeddlingClient() {
    test::g_inside = nullptr;
    LetGo();
    files_.waiting.clear();
    session_->host.scheduler->timers.clear();
    delete session_;
  }
  MeddlingClient(const MeddlingClient&) = delete;
  MeddlingClient& operator=(const MeddlingClient&) = delete;

  // What it does inside an operation.
  void Detach() {
    With([](Session& s) { s.siteUser->DetachSite(); });
  }
  void Attach() {
    With([](Session& s) { s.Attach(); });
  }
  void Start() {
    With([](Session& s) { s.Start(); });
  }
  void Header() {
    With([this](Session& s) { s.Header(true, HeadOf(file_)); });
  }
  void Stop() {
    With([](Session& s) { s.renderer->EndStream(); });
  }
  void Init() {
    With([](Session& s) { s.Init(); });
  }
  void Packet() {
    With([this](Session& s) { s.Put(file_.Cut(file_.bounds[0], file_.bounds[2])); });
  }
  void Sync() {
    With([this](Session& s) { s.renderer->OnTimeSync(time_); });
  }
  void Advance() { session_->host.scheduler->Advance(200); }
  void Answer() { files_.Answer(1); }
  void Repeat() {
    if (!answers_.empty()) answers_.back()();
  }
  void Draw() {
    With([](Session& s) {
      _QKxEvent event = {};
      s.host.site->size = {s.host.site->size.width % 90 + 7, 30};
      if (s.host.site->user) s.host.site->Draw(event);
    });
  }
  void LetGo() {
    // It is while a stream starts that the plug-in learns which references on it
    // are its supplier's.
    if (starting_) return;
    session_->host.site->user = nullptr;
    session_->LetGo();
    session_->unknown = {};
  }

  // A session of either layout, with all that a movie asks for. The operation
  // `meddled` of the client does `what` once; false if there are not so many.
  bool Play(bool nonLinear, int meddled, void (MeddlingClient::*what)()) {
    int left = meddled;
    test::g_inside = [this, &left, what] {
      if (left > 0 && --left == 0) (this->*what)();
    };
    With([](Session& s) { s.Init(); });
    starting_ = true;
    With([](Session& s) { s.Start(); });
    starting_ = false;
    nonLinear ? PlayFile() : PlayMessages();
    With([](Session& s) { s.renderer->OnEndofPackets(); });
    With([](Session& s) { s.renderer->EndStream(); });
    With([](Session& s) { s.Detach(); });
    LetGo();
    test::g_inside = nullptr;
    return left == 0;
  }

 private:
  static Bytes HeadOf(const FramedFile& file) {
    return Bytes(file.bytes.begin(), file.bytes.begin() + file.bounds[0]);
  }
  // Unless all was let go.
  template <class Call>
  void With(Call call) {
    if (session_->renderer) call(*session_);
  }
  void Syncs(int count) {
    for (int i = 0; i < count; ++i) {
      With([this](Session& s) { s.renderer->OnTimeSync(time_ += 100); });
      With([this](Session& s) {
        // The movie runs on behind its stream's end.
        s.host.scheduler->Advance(100);
        if (!files_.waiting.empty()) answers_.push_back(files_.waiting.front());
        files_.Answer(1);
      });
    }
  }
  void PlayFile() {
    With([this](Session& s) { s.Header(true, HeadOf(file_), 300); });
    With([](Session& s) { s.Attach(); });
    // One frame is missing, and comes late.
    const std::vector<UINT32>& at = file_.bounds;
    With([this, &at](Session& s) { s.Put(file_.Cut(at[0], at[3])); });
    With([this, &at](Session& s) { s.Put(file_.Cut(at[4], at.back())); });
    Syncs(3);
    With([this, &at](Session& s) { s.Put(file_.Cut(at[3], at[4], true)); });
    Syncs(8);
  }
  void PlayMessages() {
    With([this](Session& s) { s.Header(false, HeadOf(file_), 300); });
    With([](Session& s) { s.Attach(); });
    // A character is missing, of which a part has come; its other part comes.
    const Bytes part = test::FragmentRecord(9, 0, Bytes(20, 0), false);
    With([&part](Session& s) { s.Put(part); });
    author::TagStream frame;
    frame.BackgroundColor({0, 0, 200}).Place(9, 1);
    Bytes message = {5};
    test::Append(message, frame.bytes());
    With([&message](Session& s) { s.Put(test::WholeRecord(0, message)); });
    Syncs(2);
    With([](Session& s) { s.Put(test::FragmentRecord(9, 20, Bytes(5, 0), true)); });
    Syncs(2);
  }

  Session* session_ = new Session;
  test::FakeFileSystem files_;
  std::vector<std::function<void()>> answers_;  // given already
  FramedFile file_ = test::FramesOf(AskingMovie());
  UINT32 time_ = 0;
  bool starting_ = false;
};

struct Meddling {
  const char* name;
  void (MeddlingClient::*what)();
};

class MeddlingClients : public testing::TestWithParam<Meddling> {};

TEST_P(MeddlingClients, BreakNothing) {
  const int alive = test::g_alive;
  for (const bool nonLinear : {false, true}) {
    for (int meddled = 1;; ++meddled) {
      bool there;
      {
        MeddlingClient client;
        there = client.Play(nonLinear, meddled, GetParam().what);
      }
      ASSERT_EQ(test::g_alive, alive) << "operation " << meddled;
      if (!there) break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, MeddlingClients,
    testing::Values(
        Meddling{"Detach", &MeddlingClient::Detach}, Meddling{"Attach", &MeddlingClient::Attach},
        Meddling{"Start", &MeddlingClient::Start}, Meddling{"Header", &MeddlingClient::Header},
        Meddling{"Stop", &MeddlingClient::Stop}, Meddling{"Init", &MeddlingClient::Init},
        Meddling{"Packet", &MeddlingClient::Packet}, Meddling{"Sync", &MeddlingClient::Sync},
        Meddling{"Advance", &MeddlingClient::Advance}, Meddling{"Answer", &MeddlingClient::Answer},
        Meddling{"Repeat", &MeddlingClient::Repeat}, Meddling{"Draw", &MeddlingClient::Draw},
        Meddling{"LetGo", &MeddlingClient::LetGo}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace vexel
