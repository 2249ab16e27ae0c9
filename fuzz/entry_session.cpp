// Whole sessions with the plug-in: a byte chooses a call, bytes behind it are
// what it passes. Calls come in any order, with headers, packets, events and
// file answers of all kinds; what the client does inside a redraw, and inside any
// other operation of its own, is chosen as well. In the end everything must have
// been let go.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#undef None
#undef Bool

#include <algorithm>
#include <cstdlib>
#include <span>

#include "author/writer.h"
#include "entries.h"
#include "host/fake_files.h"
#include "host/session.h"

namespace {

// What the next key is, as the library would tell.
KeySym s_keysym = NoSymbol;
char s_key = 0;

}  // namespace

// Takes the place of the library's, which would want an X server.
extern "C" int XLookupString(XKeyEvent*, char* buffer, int size, KeySym* keysym, XComposeStatus*) {
  *keysym = s_keysym;
  if (size < 1 || s_key == 0) return 0;
  buffer[0] = s_key;
  return 1;
}

namespace vexel::fuzz {

namespace {

using namespace author;
using test::Ptr;
using TestBytes = test::Bytes;

// Each call costs at most a frame's work.
constexpr int kMaxCalls = 300;

// How deep a client calls back from inside its own operations.
constexpr int kMaxDepth = 3;

// All that a movie can ask of its host: loads, commands, navigations, seeks; and
// fields and buttons for the events.
TestBytes MakeMovie() {
  MovieWriter movie(60, 40, 10);
  ShapeBuilder box;
  box.Style(box.AddFill(Color{200, 0, 0})).Rectangle(Rect::Pixels(0, 0, 30, 20));
  movie.DefineShape(1, box);
  movie.DefineSprite(2, TagStream().Place(1, 1).FrameEnd().RemoveObject(1).FrameEnd().End());
  const Bytes block =
      ActionBuilder().GetURL("a.vxf", "_level3").GetURL("a.txt?x=1", "_level0").Finish();
  movie.DefineButton2(3, false,
                      {{kButtonUp | kButtonOver | kButtonDown | kButtonHit, 1, 1, {}, {}}},
                      {{1 << kEventPress, block}});
  EditTextField field;
  field.variable = "v";
  field.initialText = "text";
  movie.DefineEditText(4, Rect::Pixels(0, 0, 30, 10), field);
  movie.Place({.depth = 5, .character = 2, .name = "sp"});
  movie.Place(3, 6).Place(4, 7, Matrix::Translate(500, 300)).FrameEnd();
  const auto urls = [&movie](const char* url, const char* target, uint8_t flags) {
    movie.FrameActions(ActionBuilder().Push(url).Push(target).GetURLExpr(flags)).FrameEnd();
  };
  urls("b.vxf", "/sp", 0x40);
  urls("VXCommand:Hold=n", "", 0);
  urls("a.txt", "/sp", 0xC2);
  urls("http://a/b", "_kest", 0);
  urls("http://a/b", "_top", 2);
  urls("", "_level3", 0);
  urls("a.vxf", "_level0", 2);
  movie.End();
  return movie.Finish();
}

const TestBytes& TheMovie() {
  static const TestBytes movie = MakeMovie();
  return movie;
}

class Player {
 public:
  explicit Player(std::span<const uint8_t> input) : input_(input) {
    files_.Install(*session_->host.factory);
    files_.files["http://host/folder/a.vxf"] = TheMovie();
    files_.files["http://host/folder/b.vxf"] = TestBytes(TheMovie().begin(), TheMovie().end() - 9);
    files_.files["http://host/folder/a.txt"] = TestBytes(2048, 'x');
    host().site->size = {60, 40};
    test::g_inside = [this] { Inside(); };
  }
  ~Player() {
    test::g_inside = nullptr;
    host().site->onRedraw = nullptr;
    host().site->user = nullptr;
    session_->LetGo();
    session_->unknown = {};
    files_.waiting.clear();
    host().scheduler->timers.clear();
    delete session_;
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  void Play() {
    while (!input_.empty() && renderer()) Call();
  }

 private:
  test::FakeHost& host() { return session_->host; }
  IZEMRenderer* renderer() { return session_->renderer.get(); }

  UINT32 Byte() {
    if (input_.empty()) return 0;
    const uint8_t byte = input_[0];
    input_ = input_.subspan(1);
    return byte;
  }
  UINT32 Word() {
    const UINT32 high = Byte();
    return high << 8 | Byte();
  }
  TestBytes Some() {
    const size_t count = std::min<size_t>(Byte() * 2, input_.size());
    TestBytes bytes(input_.begin(), input_.begin() + static_cast<long>(count));
    input_ = input_.subspan(count);
    return bytes;
  }
  // A stretch of the movie's file.
  TestBytes Stretch() {
    const size_t all = TheMovie().size();
    const size_t from = Word() % (all + 1);
    const size_t to = from + Word() % (all - from + 1);
    const long start = static_cast<long>(from);
    return TestBytes(TheMovie().begin() + start, TheMovie().begin() + static_cast<long>(to));
  }

  void Start() {
    const bool outer = starting_;
    starting_ = true;
    session_->Start();
    starting_ = outer;
  }

  void Header() {
    const UINT32 what = Byte();
    const Ptr<IZEMValues> values = test::MakeValues();
    if (what & 1) values->SetPropertyULONG32("RendererFlags", 1);
    if (what & 2) values->SetPropertyULONG32("StreamVersion", Word() << 16);
    if (what & 4) values->SetPropertyULONG32("Duration", Word());
    if (what & 8) values->SetPropertyULONG32("NumPackets", Byte());
    if ((what & 0x30) == 0x10) {
      values->SetPropertyBuffer("OpaqueData", test::MakeBuffer(Some()).get());
    } else if ((what & 0x30) == 0x20) {
      values->SetPropertyBuffer("OpaqueData", test::MakeBuffer(TheMovie()).get());
    } else if ((what & 0x30) == 0) {
      const test::FramedFile file = test::FramesOf(TheMovie());
      const TestBytes head(TheMovie().begin(), TheMovie().begin() + file.bounds[0]);
      values->SetPropertyBuffer("OpaqueData", test::MakeBuffer(head).get());
    }
    renderer()->OnHeader(what & 0x80 ? nullptr : values.get());
  }

  void Packet(const TestBytes& bytes) {
    renderer()->OnPacket(test::MakePacket(bytes, Byte() * 20).get(),
                         static_cast<INT32>(Byte()) - 128);
  }

  void Event() {
    XEvent x = {};
    _QKxEvent event = {Byte() & 7, nullptr, nullptr, &x, 0, 0};
    if (event.event == ZEM_EVENT_X_KEY_PRESS) {
      x.xkey.display = reinterpret_cast<Display*>(this);
      s_keysym = 0xFF00 | Byte();
      s_key = static_cast<char>(Byte());
      x.xkey.state = Byte();
    } else if (event.event == ZEM_EVENT_X_MOTION) {
      x.xmotion.x = static_cast<int>(Byte()) - 10;
      x.xmotion.y = static_cast<int>(Byte()) - 10;
    } else {
      x.xbutton.button = Byte() % 4;
      x.xbutton.x = static_cast<int>(Byte()) - 10;
      x.xbutton.y = static_cast<int>(Byte()) - 10;
    }
    session_->siteUser->HandleEvent(Byte() == 0 ? nullptr : &event);
  }

  // What the client does inside its next redraws.
  void InsideRedraws() {
    const UINT32 what = Byte() % 10;
    test::FakeSite* site = host().site.get();
    site->onRedraw = [this, site, what] {
      if (!session_->renderer) return;
      switch (what) {
        case 1:
          session_->siteUser->DetachSite();
          break;
        case 2:
          renderer()->OnTimeSync(++time_);
          break;
        case 3:
          site->size.width = 1 + (site->size.width * 7 + 3) % 90;
          break;
        case 4:
          renderer()->OnPostSeek(time_, 0);
          break;
        case 5:
          renderer()->EndStream();
          break;
        case 6:
          files_.Answer(1);
          break;
        case 7:
          Restart();
          break;
        case 8:
          LetGo();
          break;
        default:
          break;
      }
      _QKxEvent event = {};
      if (site->user) site->Draw(event);
    };
  }

  // Some operation of the client's: the one that was chosen calls back.
  void Inside() {
    if (operationsLeft_ == 0 || --operationsLeft_ != 0) return;
    if (depth_ == kMaxDepth || !renderer()) return;
    ++depth_;
    Call();
    --depth_;
  }

  // Not while a stream starts: it is then that the plug-in learns which references
  // on it are its supplier's.
  void LetGo() {
    if (starting_) return;
    host().site->user = nullptr;
    session_->LetGo();
    session_->unknown = {};
  }

  void Size() {
    host().site->takesSize = Byte() & 1;
    switch (const UINT32 kind = Byte()) {
      case 0:
        host().site->size = {4000, 12};
        break;
      case 1:
        host().site->size = {-1, 0x7FFFFFFF};
        break;
      default:
        host().site->size = {static_cast<INT32>(kind), static_cast<INT32>(Byte())};
        break;
    }
  }

  void Files() {
    static constexpr const char* kSteps[] = {"", "Init", "GetFileObject", "Open", "Read", "Close"};
    const UINT32 what = Byte();
    switch (what % 5) {
      case 0:
        files_.failAt = kSteps[Byte() % 6];
        break;
      case 1:
        files_.refuse = kSteps[Byte() % 6];
        break;
      case 2:
        files_.atOnce = Byte() & 1;
        break;
      case 3:
        files_.files["http://host/folder/b.vxf"] = Some();
        break;
      default:
        // An answer comes twice.
        if (!files_.waiting.empty()) files_.waiting.push_back(files_.waiting.front());
        break;
    }
  }

  void Clock() {
    switch (const UINT32 what = Byte() % 6) {
      case 0:
        renderer()->OnPreSeek(time_, Word());
        break;
      case 1:
        renderer()->OnPostSeek(time_, Word());
        break;
      case 2:
        renderer()->OnPause(time_);
        break;
      case 3:
        renderer()->OnBegin(time_);
        break;
      case 4:
        renderer()->OnBuffering(1, static_cast<UINT16>(Byte()));
        break;
      default:
        static_cast<void>(what);
        for (const Ptr<IZEMClientAdviseSink>& sink :
             std::vector<Ptr<IZEMClientAdviseSink>>(host().player->sinks)) {
          sink->OnPosLength(Word(), 1000);
        }
        break;
    }
  }

  void Restart() {
    static constexpr const char* kQualities[] = {"", "1", "3", "x"};
    host().preferences->values["Quality"] = kQualities[Byte() % 4];
    host().factory->failAfter = static_cast<int>(Byte() % 8) - 1;
    session_->plugin->InitPlugin(Byte() % 8 ? host().context.get() : nullptr);
    host().factory->failAfter = -1;
  }

  void Call() {
    if (++calls_ > kMaxCalls) {
      input_ = {};
      return;
    }
    switch (Byte() % 21) {
      case 0:
        Start();
        break;
      case 1:
        renderer()->EndStream();
        break;
      case 2:
        Header();
        break;
      case 3:
        Packet(Some());
        break;
      case 4: {
        TestBytes message = {static_cast<UINT8>(Byte())};
        test::Append(message, Byte() & 1 ? Some() : Stretch());
        message.resize(std::min<size_t>(message.size(), 4095));
        Packet(test::WholeRecord(Word(), message));
        break;
      }
      case 5: {
        const UINT16 id = static_cast<UINT16>(Word());
        const UINT32 offset = Word() >> 6;
        const bool isLast = Byte() & 1;
        Packet(test::FragmentRecord(id, offset, Some(), isLast));
        break;
      }
      case 6: {
        const test::FramedFile file = test::FramesOf(TheMovie());
        const UINT32 first = file.bounds[0];
        const UINT32 from = first + Word() % (file.bounds.back() - first);
        const UINT32 to = from + 1 + Word() % (file.bounds.back() - from);
        TestBytes cut = file.Cut(from, to, Byte() % 4 == 0);
        const UINT32 damage = Byte();
        if (damage < 16) cut[damage] ^= static_cast<UINT8>(Byte());
        Packet(cut);
        break;
      }
      case 7:
        renderer()->OnPacket(Byte() & 1 ? test::MakeLostPacket().get() : nullptr, 0);
        break;
      case 8:
      case 9:
        time_ += Byte() * 4;
        renderer()->OnTimeSync(time_);
        break;
      case 10:
        renderer()->OnTimeSync(time_ = Word());
        break;
      case 11:
        Clock();
        break;
      case 12:
        renderer()->OnEndofPackets();
        break;
      case 13:
        session_->Attach();
        break;
      case 14:
        session_->Detach();
        break;
      case 15:
        Event();
        break;
      case 16:
        InsideRedraws();
        break;
      case 17:
        if (Byte() & 1) {
          Size();
        } else {
          host().scheduler->Advance(Byte() * 2);
        }
        break;
      case 18:
        if (Byte() & 1) {
          files_.Answer(static_cast<int>(Byte() % 8));
        } else {
          Files();
        }
        break;
      case 19:
        operationsLeft_ = 1 + Byte() % 32;
        break;
      default:
        switch (Byte() % 5) {
          case 0:
            Restart();
            break;
          case 2:
            if (Byte() == 0) LetGo();
            break;
          case 1: {
            _QKxEvent event = {};
            if (host().site->user) host().site->Draw(event);
            break;
          }
          default:
            if (host().menu->response) {
              host().menu->response->OnCommand(static_cast<UINT16>(20028 + Byte() % 20));
            }
            break;
        }
        break;
    }
  }

  std::span<const uint8_t> input_;
  test::Session* session_ = new test::Session;
  test::FakeFileSystem files_;
  UINT32 time_ = 0;
  int calls_ = 0;
  int depth_ = 0;
  bool starting_ = false;
  UINT32 operationsLeft_ = 0;  // until one calls back; 0: none does
};

}  // namespace

void FuzzSession(const uint8_t* data, size_t size) {
  const int alive = test::g_alive;
  {
    Player player({data, size});
    player.Play();
  }
  // Something still holds what it got.
  if (test::g_alive != alive) abort();
}

}  // namespace vexel::fuzz
