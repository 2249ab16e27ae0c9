// Two clocks: the process's, by which the plug-in draws and its timers run, and
// the network's, which runs along with it and, besides, while the receiver
// fills its buffer before the presentation begins or goes on after a jump.
#include "client/headless/stream_client.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "client/core/stream_source.h"
#include "client/core/values.h"
#include "client/headless/process_clock.h"
#include "client/stream/linear_packetizer.h"
#include "client/stream/nonlinear_packetizer.h"

namespace vexel::client {

namespace {

// Files that the plug-in loads are waited for so long, of real time.
constexpr uint32_t kLongestLoadMs = 60000;

std::vector<uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error(std::string("cannot be opened: ") + std::strerror(errno));
  // Opens, and cannot be read.
  if (std::filesystem::is_directory(path)) throw std::runtime_error("is a folder");
  return {std::istreambuf_iterator<char>(in), {}};
}

// Says what the plug-in asks of the player.
class PrintingPlayer : public Player {
 public:
  PrintingPlayer(EventLoop* loop, IUnknown* context, const StreamSetup* setup)
      : Player(loop, context, ProcessClock), setup_(setup) {}

  INT32 OpenURL(const char* url) override {
    setup_->print(std::string("OpenURL url=") + (url ? url : ""));
    return Player::OpenURL(url);
  }
  INT32 Begin() override {
    setup_->print("Begin");
    return Player::Begin();
  }
  INT32 Stop() override {
    setup_->print("Stop");
    return Player::Stop();
  }
  INT32 Pause() override {
    setup_->print("Pause");
    return Player::Pause();
  }
  INT32 Seek(UINT32 ms) override {
    setup_->print("Seek " + std::to_string(ms));
    return Player::Seek(ms);
  }

 private:
  const StreamSetup* setup_;
};

}  // namespace

StreamClient::StreamClient(StreamSetup setup)
    : setup_(std::move(setup)),
      preferences_(Make<Preferences>("")),
      scheduler_(Make<VirtualScheduler>()) {
  OpenMovie(setup_.movie);
}

StreamClient::~StreamClient() {
  if (session_) session_->Close();
  session_ = nullptr;
  if (player_) player_->Close();
  // Closed files and sockets have something to say yet.
  Settle();
}

void StreamClient::OpenMovie(const std::string& path) {
  auto movie = std::make_unique<MovieIndex>(ReadFile(path));
  std::unique_ptr<Packetizer> packetizer;
  if (setup_.linear) {
    packetizer =
        std::make_unique<LinearPacketizer>(movie.get(), setup_.packetBytes, setup_.keyEveryMs);
  } else {
    packetizer = std::make_unique<NonLinearPacketizer>(movie.get(), setup_.packetBytes);
  }
  movie_ = std::move(movie);
  packetizer_ = std::move(packetizer);
  network_ = std::make_unique<LossyNetwork>(setup_.network);
  jitter_ = std::make_unique<JitterBuffer>(setup_.jitterMs);
  url_ = std::filesystem::absolute(path).string();
  nextPacket_ = 0;
  numbered_.clear();
  gate_ = {};
  // Messages of a linear stream stand alone.
  if (setup_.linear) gate_.Open();
  requests_.clear();
  repeatsAsked_ = ended_ = endTold_ = pastEnd_ = false;
}

void StreamClient::Start() {
  library_ = std::make_unique<PluginLibrary>(setup_.plugin);
  const auto navigate = [this](const std::string& url, const std::string& target) {
    setup_.print("GoToURL url=" + url + " target=" + target);
    return setup_.browser.empty() || RunForURL(setup_.browser, url);
  };
  services_ = std::make_unique<Services>(
      &loop_, ServicesSetup{.scheduler = Ref<IZEMScheduler>(scheduler_),
                            .navigate = Make<HyperNavigate>(HyperNavigate::Opener(navigate)),
                            .preferences = preferences_,
                            .report = setup_.report});
  player_ = Make<PrintingPlayer>(&loop_, services_->context(), &setup_);
  site_ = Make<Site>();
  OpenSession();
}

void StreamClient::OpenSession() {
  session_ = std::make_unique<Session>(*library_, services_->context(), player_.get(), site_.get());
  session_->onOpenURL = [this](const std::string& url) { OpenURL(url); };
  session_->onSeek = [this](uint32_t time) { JumpTo(time); };

  StreamSource::SendRequest send;
  if (setup_.resends) send = [this](IZEMBuffer* request) { TakeRequest(request); };
  const Ref<StreamSource> source = Make<StreamSource>(url_, send);
  Ref<IZEMStream> stream;
  source->GetStream(0, stream.Out());
  const StreamHeader header = packetizer_->Header();
  const uint32_t duration = setup_.durationMs.value_or(header.duration);
  const Ref<IZEMValues> values = NewValues();
  values->SetPropertyULONG32("StreamVersion", 0);
  values->SetPropertyULONG32("ContentVersion", 0);
  values->SetPropertyULONG32("Duration", duration);
  values->SetPropertyULONG32("RendererFlags", header.rendererFlags);
  values->SetPropertyULONG32("NumPackets", header.packets);
  values->SetPropertyBuffer("OpaqueData", NewBuffer(header.opaque).get());
  player_->Reset();
  player_->SetLength(duration);
  session_->Open(stream.get(), values.get());

  FillBuffer();
  player_->Player::Begin();
  Settle();
}

// What cannot be shown leaves the presentation as it is.
void StreamClient::OpenURL(const std::string& url) {
  Location location;
  try {
    if (!Locate(url, &location) || location.http) throw std::runtime_error("is no local movie");
    const MovieIndex movie(ReadFile(location.path));
  } catch (const std::runtime_error& error) {
    setup_.print("OpenFailed url=" + url);
    return;
  }
  session_->Close();
  session_ = nullptr;
  OpenMovie(location.path);
  OpenSession();
}

uint64_t StreamClient::networkNow() const {
  return ProcessClock() + filled_;
}

void StreamClient::SendNumbered(const StreamPacket& packet) {
  numbered_.push_back(packet);
  stats_.sent++;
  network_->Send(networkNow(), {.number = static_cast<uint32_t>(numbered_.size() - 1),
                                .time = packet.time,
                                .bytes = packet.bytes});
}

void StreamClient::SendDue() {
  const std::vector<StreamPacket>& packets = packetizer_->packets();
  const uint64_t horizon = uint64_t{player_->GetPosition()} + setup_.leadMs;
  while (nextPacket_ < packets.size() && packets[nextPacket_].time <= horizon)
    SendNumbered(packets[nextPacket_++]);
}

// Called inside OnPacket: what it asks for is looked at later.
void StreamClient::TakeRequest(IZEMBuffer* request) {
  const auto bytes = BytesOf(request);
  stats_.requests++;
  requests_.emplace(networkNow() + setup_.network.delayMs,
                    std::vector<uint8_t>(bytes.begin(), bytes.end()));
}

void StreamClient::AnswerRequests() {
  const auto end = requests_.upper_bound(networkNow());
  for (auto it = requests_.begin(); it != end; ++it) {
    const std::vector<StreamPacket> answer = packetizer_->Answer(it->second);
    if (!setup_.linear && !answer.empty()) stats_.dummyBytes += BigAt(it->second, 4, 4);
    for (const StreamPacket& packet : answer)
      network_->Send(networkNow(), {.isAnswer = true, .time = packet.time, .bytes = packet.bytes});
  }
  requests_.erase(requests_.begin(), end);
}

void StreamClient::Deliver(JitterBuffer::Output output) {
  NetworkPacket& packet = output.packet;
  switch (output.kind) {
    case JitterBuffer::Kind::kLost:
      session_->Packet(NewLostPacket().get());
      return;
    case JitterBuffer::Kind::kInOrder:
      HandOver(packet);
      if (!setup_.linear) gate_.PassedInOrder(packet.bytes);
      break;
    case JitterBuffer::Kind::kLate:
      if (!packetizer_->MakeLate(&packet.bytes)) return;
      gate_.Put(std::move(packet));
      break;
    case JitterBuffer::Kind::kAnswer:
      gate_.Put(std::move(packet));
      break;
  }
  HandOverResent();
}

void StreamClient::HandOver(const NetworkPacket& packet) {
  session_->Packet(NewPacket(NewBuffer(packet.bytes).get(), packet.time, 0).get());
}

void StreamClient::HandOverResent() {
  for (const NetworkPacket& packet : gate_.Take()) {
    stats_.lateWrites++;
    HandOver(packet);
  }
}

// The plug-in misses what a later packet shows to be missing. Of the last ones
// there is no later one, so the receiver, which knows how many there are, asks
// for them itself, once.
void StreamClient::EndIfAllIn() {
  if (ended_ || nextPacket_ < packetizer_->packets().size()) return;
  if (network_->NextArrival() != LossyNetwork::kNever ||
      jitter_->NextDeadline() != JitterBuffer::kNever)
    return;
  const auto missing = jitter_->MissingTail(static_cast<uint32_t>(numbered_.size()));
  if (!missing.empty() && setup_.resends && !std::exchange(repeatsAsked_, true)) {
    for (const uint32_t number : missing) {
      stats_.repeats++;
      const StreamPacket& packet = numbered_[number];
      // There and back again.
      network_->Send(
          networkNow() + setup_.network.delayMs,
          {.number = number, .isRepeat = true, .time = packet.time, .bytes = packet.bytes});
    }
    return;
  }
  ended_ = true;
  gate_.Open();
  HandOverResent();
}

// The plug-in takes packets in at its time syncs, and the end at once: so the
// end is told behind the sync that follows the last packet.
void StreamClient::TimeSync(uint32_t ms) {
  session_->TimeSync(ms);
  if (ended_ && session_ && !std::exchange(endTold_, true)) session_->EndOfPackets();
}

bool StreamClient::RunDue() {
  const uint32_t before = stats_.sent;
  SendDue();
  AnswerRequests();
  bool any = stats_.sent != before;
  for (NetworkPacket& packet : network_->Receive(networkNow())) {
    jitter_->Put(networkNow(), std::move(packet));
    any = true;
  }
  for (JitterBuffer::Output& output : jitter_->Take(networkNow())) {
    Deliver(std::move(output));
    any = true;
  }
  if (scheduler_->NextDue() <= ProcessClock()) {
    scheduler_->RunDue();
    any = true;
  }
  const bool ended = ended_;
  EndIfAllIn();
  return any || ended_ != ended;
}

uint64_t StreamClient::NextEvent() const {
  uint64_t next = std::min(network_->NextArrival(), jitter_->NextDeadline());
  if (!requests_.empty()) next = std::min(next, requests_.begin()->first);
  return next;
}

// The buffer is full once all that is due to be sent has come or was given up.
void StreamClient::FillBuffer() {
  for (;;) {
    while (RunDue()) {
    }
    const uint64_t next = NextEvent();
    if (next == UINT64_MAX) return;
    filled_ += next - std::min(next, networkNow());
  }
}

void StreamClient::Advance(uint64_t ms) {
  const uint64_t target = ProcessClock() + ms;
  for (;;) {
    while (RunDue()) {
    }
    uint64_t next = std::min(target, scheduler_->NextDue());
    const uint64_t event = NextEvent();
    if (event != UINT64_MAX) next = std::min(next, event - std::min(event, filled_));
    const auto& packets = packetizer_->packets();
    if (player_->IsRunning() && nextPacket_ < packets.size()) {
      const uint64_t horizon = uint64_t{player_->GetPosition()} + setup_.leadMs;
      next = std::min(next, ProcessClock() + packets[nextPacket_].time - horizon);
    }
    if (ProcessClock() >= target) return;
    SetProcessClock(std::max(next, ProcessClock() + 1));
  }
}

void StreamClient::Settle() {
  if (services_)
    loop_.RunUntil([this] { return services_->pendingAnswers() == 0; }, kLongestLoadMs);
  while (loop_.Turn(false)) {
  }
}

void StreamClient::ClockTo(uint32_t ms) {
  if (!player_->IsRunning()) {
    Advance(ms - std::min(ms, standingAt_));
    standingAt_ = ms;
    player_->TellPosition();
  } else {
    const uint32_t position = player_->GetPosition();
    Advance(ms - std::min(ms, position));
    // The movie may have jumped or stopped meanwhile, by what it loaded.
    if (ms < position) player_->SetPosition(ms);
    // Behind the end a client's clock stands, and the plug-in's own timer goes on.
    if (!pastEnd_) TimeSync(ms);
    pastEnd_ = ms >= player_->GetLength();
    standingAt_ = ms;  // in case it has stopped
  }
  Settle();
}

void StreamClient::Wait(uint32_t ms) {
  Advance(ms);
  Settle();
}

void StreamClient::Serve(uint32_t ms) {
  loop_.RunUntil([] { return false; }, ms);
  Settle();
}

void StreamClient::Begin() {
  player_->Player::Begin();
  Settle();
}

void StreamClient::Pause() {
  player_->Player::Pause();
  standingAt_ = player_->GetPosition();
  Settle();
}

void StreamClient::JumpTo(uint32_t time) {
  Packetizer::Jump jump = packetizer_->JumpTo(time, nextPacket_);
  pastEnd_ = false;
  if (jump.first.empty()) return;
  // A new beginning: what is under way is of the past.
  jitter_->JumpTo(static_cast<uint32_t>(numbered_.size()));
  for (const StreamPacket& packet : jump.first) SendNumbered(packet);
  nextPacket_ = jump.next;
  ended_ = endTold_ = repeatsAsked_ = false;
}

void StreamClient::Seek(uint32_t ms) {
  player_->Player::Seek(ms);
  standingAt_ = ms;
  FillBuffer();
  if (player_->IsRunning()) {
    TimeSync(ms);
  } else {
    player_->TellPosition();
  }
  Settle();
}

void StreamClient::Resize(int32_t width, int32_t height) {
  site_->Resize({width, height});
  Settle();
}

bool StreamClient::Choose(uint16_t menuItem) {
  const bool chosen = services_->menu().Choose(menuItem);
  Settle();
  return chosen;
}

bool StreamClient::Send(uint32_t code, void* xEvent) {
  // Any number will do for the window: nobody asks a server for it.
  _QKxEvent event{code, reinterpret_cast<void*>(uintptr_t{1}), nullptr, xEvent, 0, 0};
  site_->Send(&event);
  Settle();
  return event.handled != 0;
}

StreamStats StreamClient::stats() const {
  StreamStats stats = stats_;
  stats.lost = network_->lost();
  stats.doubles = jitter_->doubles();
  stats.reported = jitter_->reported();
  stats.late = jitter_->late();
  stats.resent = network_->answers();
  stats.resentLost = network_->answersLost();
  return stats;
}

}  // namespace vexel::client
