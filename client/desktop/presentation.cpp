// The plug-in is not told how long the movie is: it would set timers of its own
// behind the end, which know nothing of speed. It gets the clock's time for as
// long as it plays. A movie that shows one frame after the other begins anew when
// its clock is set back; one that steers itself is left to do so, and its clock
// goes on.
#include "client/desktop/presentation.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "client/core/scheduler.h"
#include "client/core/stream_source.h"
#include "client/core/values.h"
#include "client/feed/network_feed.h"
#include "client/feed/progressive_feed.h"

namespace vexel::client {

namespace {

// The time is told when a frame is due; the caret of a field and a stream that
// waits want it so often at least, milliseconds.
constexpr uint32_t kLongestTick = 100;
constexpr uint32_t kShortestTick = 1;
// The plug-in refuses a time that is told before it has rested: at most for the
// time that it drew, divided by this share, and not for more than a second.
constexpr double kLeastShare = 0.3;
constexpr uint32_t kRestMs = 1000;
constexpr uint32_t kRetryTick = 8;
constexpr int64_t kShortBurstUs = 500;  // so little that it may have been refused
constexpr int kBuffered = 100;          // percent
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
  if (session_ && stage_.report) {
    const uint64_t pictures = stage_.site->picture().copies() - picturesBefore_;
    std::fprintf(stderr, "vexel: %s: %s\n", url_.c_str(), statistics_->Line(pictures).c_str());
  }
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
    if (!started() && CanStart()) Start();
    RunFeed();
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
    RunFeed();
    if (!whole || !movie_.complete())
      Fail("The connection broke. The movie plays as far as it came.");
  } catch (const std::runtime_error& problem) {
    Fail(whole ? problem.what() : "The connection broke before the movie began.");
  }
}

// A network takes a movie that is whole.
bool Presentation::CanStart() const {
  return stage_.delivery ? movie_.finished() : movie_.ready() && movie_.framesIn() > 0;
}

std::shared_ptr<Feed> Presentation::NewFeed() {
  const auto hand_over = [this](IZEMPacket* packet) {
    session_->Packet(packet);
    if (!running() || buffering()) Wake();
  };
  if (!stage_.delivery) {
    return std::make_shared<ProgressiveFeed>(&movie_, [=](const StreamPacket& packet) {
      hand_over(NewPacket(NewBuffer(packet.bytes).get(), packet.time, 0).get());
    });
  }
  NetworkFeed::Ends ends{.loop = stage_.loop,
                         .position = [this] { return player_->GetPosition(); },
                         .handOver = hand_over};
  try {
    return std::make_shared<NetworkFeed>(*stage_.delivery, &movie_, ends);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(std::string("The movie ") + error.what() + ".");
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
  const std::shared_ptr<Feed> feed = NewFeed();
  player_ = Make<Player>(stage_.loop, services_->context(), [this] { return clock_.Now(); });
  session_ =
      std::make_unique<Session>(*stage_.library, services_->context(), player_.get(), stage_.site);
  session_->onOpenURL = [this](const std::string& url) { events_.onOpenURL(url); };
  session_->onBegin = [this] { Wake(); };
  session_->onSeek = [this](uint32_t time) {
    statistics_->Jump();
    Wake();
    feed_->JumpTo(time);
    endTold_ = endTold_ && feed_->ended();
  };
  feed_ = feed;
  picturesBefore_ = stage_.site->picture().copies();
  statistics_.emplace();

  const std::string base = location.http ? url_ : std::filesystem::absolute(location.path).string();
  StreamSource::SendRequest send;
  if (feed_->resends()) {
    // The source is the plug-in's, and may stay for longer than the feed.
    send = [held = std::weak_ptr<Feed>(feed_)](IZEMBuffer* request) {
      if (const auto there = held.lock()) there->Request(BytesOf(request));
    };
  }
  const Ref<StreamSource> source = Make<StreamSource>(base, send);
  Ref<IZEMStream> stream;
  source->GetStream(0, stream.Out());
  const StreamHeader header = feed_->Header();
  player_->SetLength(length());
  session_->Open(stream.get(),
                 NewHeader(header.rendererFlags, header.packets, header.opaque).get());
  RunFeed();
  player_->Begin();
  Tick();
}

void Presentation::RunFeed() {
  if (!session_) return;
  feed_->Run();
  player_->SetLength(length());
}

uint32_t Presentation::UntilNextFrame() const {
  const uint32_t now = player_->GetPosition();
  const uint32_t due = feed_->DueTime(feed_->FrameDueAt(now) + 1);
  if (due <= now) return kLongestTick;  // behind the last one
  const double left = std::min(std::ceil((due - now) / clock_.speed()), double{kLongestTick});
  return std::max(static_cast<uint32_t>(left), kShortestTick);
}

void Presentation::TickIn(uint32_t ms) {
  tick_ = stage_.loop->After(ms, [this] { Tick(); });
}

void Presentation::Wake() {
  standingMs_ = kRetryTick;
  TickIn(0);
}

void Presentation::Tick() {
  if (!session_) return;
  TickIn(kLongestTick);
  RunFeed();
  const uint32_t now = player_->GetPosition();
  const bool waits = feed_->Waits(now);
  const int in = waits ? std::min(feed_->percent(), kBuffered - 1) : kBuffered;
  if (std::exchange(buffered_, in) != in) session_->Buffering(0, static_cast<uint16_t>(in));
  clock_.Hold(waits);
  if (waits) return;
  if (player_->IsRunning()) return GoOn(now);
  // The plug-in may be resting from what it drew before, and take no report of a
  // seek; of a linear movie it takes none. So the place where the clock stands is
  // told, ever more rarely, until the longest rest is over. The time is the same:
  // nothing moves. Then all sleeps until something wakes it up.
  if (standingMs_ > kRestMs) {
    tick_.Cancel();
  } else {
    TickIn(standingMs_);
    standingMs_ *= 2;
  }
  TimeSync(now);
}

// The plug-in takes packets in at its time syncs, and the end at once: so the
// end is told behind the sync that follows the last packet.
void Presentation::TimeSync(uint32_t now) {
  session_->TimeSync(now);
  if (feed_->ended() && !std::exchange(endTold_, true)) session_->EndOfPackets();
}

void Presentation::GoOn(uint32_t now) {
  if (movie_.finished() && now >= length()) {
    if (!loop_) {
      player_->Pause();
      player_->SetPosition(length());
      return;
    }
    if (feed_->goesRound() && feed_->frames() > 1) return Seek(0);
  }
  TickIn(UntilNextFrame());
  const int64_t began = g_get_monotonic_time();
  const bool rests =
      static_cast<double>(began - burstBeganUs_) * kLeastShare < static_cast<double>(burstUs_);
  TimeSync(now);
  const int64_t took = g_get_monotonic_time() - began;
  if (rests && took < kShortBurstUs) {
    TickIn(std::min(UntilNextFrame(), kRetryTick));
    return;
  }
  burstBeganUs_ = began;
  burstUs_ = took;
  statistics_->Show(feed_->FrameDueAt(now));
}

uint32_t Presentation::length() const {
  if (feed_) return feed_->DueTime(feed_->frames());
  return movie_.ready() ? movie_.duration() : 0;
}

int Presentation::loadedPercent() const {
  return feed_ ? feed_->percent() : movie_.percent();
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
  if (!started() || feed_->framesIn() == 0) return;
  player_->Seek(std::min(ms, feed_->DueTime(feed_->framesIn() - 1)));
  if (!player_->IsRunning()) player_->TellPosition();
}

void Presentation::StepFrames(int count) {
  if (!started()) return;
  player_->Pause();
  const auto frame = static_cast<int64_t>(feed_->FrameDueAt(position())) + count;
  const auto last = static_cast<int64_t>(feed_->framesIn()) - 1;
  Seek(feed_->DueTime(
      static_cast<size_t>(std::clamp<int64_t>(frame, 0, std::max<int64_t>(last, 0)))));
}

}  // namespace vexel::client
