// The plug-in is not told how long the movie is: it would set timers of its own
// behind the end, which know nothing of speed. It gets the clock's time for as
// long as it plays, and timelines begin again by themselves.
#include "client/desktop/presentation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "client/core/scheduler.h"
#include "client/core/stream_source.h"
#include "client/core/values.h"

namespace vexel::client {

namespace {

// How often the time is told at least, and at most, milliseconds.
constexpr uint32_t kLongestTick = 50;
constexpr uint32_t kShortestTick = 5;
// A renderer of packets that are the movie file in its order.
constexpr uint32_t kNonLinear = 1;
// The closed movie's files and sockets are given so long to end.
constexpr uint32_t kLongestGoodbye = 2000;

// Keeps services until nothing of the plug-in's is under way any more.
void LetGo(EventLoop* loop, std::shared_ptr<Services> services, int left) {
  if (left == 0) return;
  const auto held = std::make_shared<Watch>();
  *held = loop->After(kLongestGoodbye / 4, [=] {
    if (services->pendingAnswers() > 0) LetGo(loop, services, left - 1);
    held->Cancel();
  });
}

}  // namespace

Presentation::Presentation(const Stage& stage, const std::string& url, PresentationEvents events)
    : stage_(stage), url_(url), events_(std::move(events)) {
  // Not in this call, so that whoever made this object knows it before it speaks.
  soon_ = stage_.loop->Soon([this] {
    Location location;
    if (!Locate(url_, &location)) {
      Fail("Addresses of this kind cannot be opened.");
    } else if (location.http) {
      LoadPage(location.path);
    } else {
      LoadFile(location.path);
    }
  });
}

Presentation::~Presentation() {
  transfer_ = nullptr;
  tick_.Cancel();
  if (session_) session_->Close();
  session_ = nullptr;
  if (player_) player_->Close();
  if (services_) LetGo(stage_.loop, std::move(services_), 4);
}

void Presentation::Fail(const std::string& text) {
  transfer_ = nullptr;
  events_.onProblem(text);
}

void Presentation::LoadFile(const std::string& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) return Fail("This is a folder, not a movie.");
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    const bool there = std::filesystem::exists(path, error);
    return Fail(there ? "The file may not be read." : "There is no such file.");
  }
  const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
  if (in.bad()) return Fail("The file cannot be read.");
  try {
    movie_.Append(bytes);
    const bool whole = movie_.finished();
    movie_.Finish();
    Start();
    if (!whole) Fail("The movie is cut off. It plays as far as it goes.");
  } catch (const std::runtime_error& problem) {
    Fail(problem.what());
  }
}

void Presentation::LoadPage(const std::string& url) {
  HttpTransfer::Listener listener;
  listener.onBegin = [this](bool ok) {
    if (!ok)
      soon_ = stage_.loop->Soon(
          [this] { Fail("The server does not have this movie, or cannot be reached."); });
  };
  listener.onBytes = [this](const uint8_t* bytes, size_t size) {
    Take({bytes, size});
    return true;
  };
  listener.onEnd = [this](bool whole) {
    soon_ = stage_.loop->Soon([this, whole] { Finish(whole); });
  };
  transfer_ = stage_.http->Get(url, std::move(listener));
}

void Presentation::Take(std::span<const uint8_t> bytes) {
  try {
    movie_.Append(bytes);
    if (!started() && movie_.ready() && movie_.framesIn() > 0) Start();
    Feed();
  } catch (const std::runtime_error& problem) {
    // Not in the transfer's own call.
    soon_ = stage_.loop->Soon([this, text = std::string(problem.what())] { Fail(text); });
  }
}

void Presentation::Finish(bool whole) {
  if (!transfer_) return;
  transfer_ = nullptr;
  try {
    movie_.Finish();
    if (!started()) Start();
    Feed();
    if (!whole || !movie_.complete())
      Fail("The connection broke. The movie plays as far as it came.");
  } catch (const std::runtime_error& problem) {
    Fail(whole ? problem.what() : "The connection broke before the movie began.");
  }
}

void Presentation::Start() {
  const auto page = [this](const std::string& url, const std::string&) {
    return events_.onPage(url);
  };
  Location location;
  Locate(url_, &location);
  services_ = std::make_unique<Services>(
      stage_.loop, ServicesSetup{.scheduler = Make<Scheduler>(stage_.loop),
                                 .navigate = Make<HyperNavigate>(HyperNavigate::Opener(page)),
                                 .preferences = stage_.preferences,
                                 .report = stage_.report,
                                 .allowLocalFiles = !location.http});
  player_ = Make<Player>(stage_.loop, services_->context(), [this] { return clock_.Now(); });
  session_ =
      std::make_unique<Session>(*stage_.library, services_->context(), player_.get(), stage_.site);
  session_->onOpenURL = [this](const std::string& url) { events_.onOpenURL(url); };

  const std::string base = location.http ? url_ : std::filesystem::absolute(location.path).string();
  const Ref<StreamSource> source = Make<StreamSource>(base, nullptr);
  Ref<IZEMStream> stream;
  source->GetStream(0, stream.Out());
  const Ref<IZEMValues> header = NewValues();
  header->SetPropertyULONG32("StreamVersion", 0);
  header->SetPropertyULONG32("ContentVersion", 0);
  header->SetPropertyULONG32("RendererFlags", kNonLinear);
  header->SetPropertyBuffer("OpaqueData", NewBuffer(movie_.head()).get());
  player_->SetLength(movie_.duration());
  session_->Open(stream.get(), header.get());
  Feed();
  player_->Begin();
  Tick();
}

// Hands over what is in.
void Presentation::Feed() {
  if (!session_) return;
  if (const std::optional<StreamPacket> packet = movie_.TakePacket())
    session_->Packet(NewPacket(NewBuffer(packet->bytes).get(), packet->time, 0).get());
  player_->SetLength(movie_.duration());
  if (movie_.finished() && !std::exchange(endTold_, true)) session_->EndOfPackets();
}

// Half a frame at this speed, so that none is shown late by more.
uint32_t Presentation::TickMs() const {
  const double frameMs = movie_.DueTime(1) / clock_.speed();
  return std::clamp(static_cast<uint32_t>(frameMs / 2), kShortestTick, kLongestTick);
}

void Presentation::Tick() {
  if (!session_) return;
  tick_ = stage_.loop->After(TickMs(), [this] { Tick(); });
  if (!player_->IsRunning()) {
    player_->TellPosition();
    // The report of a seek may have come while the plug-in rested from the seek
    // before, and it takes no second report. The time is the same: nothing moves.
    session_->TimeSync(player_->GetPosition());
    return;
  }
  const uint32_t now = player_->GetPosition();
  const bool ahead = !movie_.finished() && movie_.FrameDueAt(now) >= movie_.framesIn();
  if (ahead != clock_.held()) {
    clock_.Hold(ahead);
    session_->Buffering(0, ahead ? 0 : 100);
  }
  if (!loop_ && movie_.finished() && now >= length()) {
    player_->Pause();
    player_->SetPosition(length());
    return;
  }
  session_->TimeSync(now);
}

uint32_t Presentation::length() const {
  return movie_.ready() ? movie_.duration() : 0;
}

uint32_t Presentation::position() const {
  if (!started()) return 0;
  const uint32_t now = player_->GetPosition();
  return now > length() && length() > 0 ? now % length() : now;
}

void Presentation::PlayOrPause() {
  if (!started()) return;
  if (player_->IsRunning()) {
    player_->Pause();
    return;
  }
  if (!loop_ && player_->GetPosition() >= length()) Seek(0);
  player_->Begin();
}

void Presentation::Seek(uint32_t ms) {
  if (!started() || movie_.framesIn() == 0) return;
  player_->Seek(std::min(ms, movie_.DueTime(movie_.framesIn() - 1)));
  if (!player_->IsRunning()) player_->TellPosition();
}

void Presentation::StepFrames(int count) {
  if (!started()) return;
  player_->Pause();
  const auto frame = static_cast<int64_t>(movie_.FrameDueAt(position())) + count;
  const auto last = static_cast<int64_t>(movie_.framesIn()) - 1;
  Seek(movie_.DueTime(
      static_cast<size_t>(std::clamp<int64_t>(frame, 0, std::max<int64_t>(last, 0)))));
}

}  // namespace vexel::client
