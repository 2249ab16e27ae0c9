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
  SetMovie(setup_.movie, NewDelivery(setup_.movie));
}

StreamClient::~StreamClient() {
  if (session_) session_->Close();
  session_ = nullptr;
  if (player_) player_->Close();
  // Closed files and sockets have something to say yet.
  Settle();
}

std::unique_ptr<Delivery> StreamClient::NewDelivery(const std::string& path) {
  DeliveryEnds ends;
  ends.now = [this] { return networkNow(); };
  ends.position = [this] { return player_->GetPosition(); };
  ends.packet = [this](const NetworkPacket& packet) {
    session_->Packet(NewPacket(NewBuffer(packet.bytes).get(), packet.time, 0).get());
  };
  ends.lostPacket = [this] { session_->Packet(NewLostPacket().get()); };
  return std::make_unique<Delivery>(setup_.delivery, ReadFile(path), std::move(ends));
}

void StreamClient::SetMovie(const std::string& path, std::unique_ptr<Delivery> delivery) {
  delivery_ = std::move(delivery);
  url_ = std::filesystem::absolute(path).string();
  endTold_ = pastEnd_ = false;
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
  session_->onSeek = [this](uint32_t time) {
    delivery_->JumpTo(time);
    pastEnd_ = false;
    endTold_ = endTold_ && delivery_->ended();
  };

  StreamSource::SendRequest send;
  if (setup_.delivery.resends)
    send = [this](IZEMBuffer* request) { delivery_->Request(BytesOf(request)); };
  const Ref<StreamSource> source = Make<StreamSource>(url_, send);
  Ref<IZEMStream> stream;
  source->GetStream(0, stream.Out());
  const StreamHeader header = delivery_->Header();
  const uint32_t duration = setup_.durationMs.value_or(header.duration);
  const Ref<IZEMValues> values = NewHeader(header.rendererFlags, header.packets, header.opaque);
  values->SetPropertyULONG32("Duration", duration);
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
  std::unique_ptr<Delivery> delivery;
  try {
    if (!Locate(url, &location) || location.http) throw std::runtime_error("is no local movie");
    delivery = NewDelivery(location.path);
  } catch (const std::runtime_error& error) {
    setup_.print("OpenFailed url=" + url);
    return;
  }
  session_->Close();
  session_ = nullptr;
  SetMovie(location.path, std::move(delivery));
  OpenSession();
}

uint64_t StreamClient::networkNow() const {
  return ProcessClock() + filled_;
}

// The plug-in takes packets in at its time syncs, and the end at once: so the
// end is told behind the sync that follows the last packet.
void StreamClient::TimeSync(uint32_t ms) {
  session_->TimeSync(ms);
  if (delivery_->ended() && session_ && !std::exchange(endTold_, true)) session_->EndOfPackets();
}

bool StreamClient::RunDue() {
  bool any = delivery_->RunDue();
  if (scheduler_->NextDue() <= ProcessClock()) {
    scheduler_->RunDue();
    any = true;
  }
  return delivery_->EndIfAllIn() || any;
}

void StreamClient::FillBuffer() {
  for (;;) {
    while (RunDue()) {
    }
    const uint64_t next = delivery_->NextEvent();
    if (next == Delivery::kNever) return;
    filled_ += next - std::min(next, networkNow());
  }
}

void StreamClient::Advance(uint64_t ms) {
  const uint64_t target = ProcessClock() + ms;
  for (;;) {
    while (RunDue()) {
    }
    uint64_t next = std::min(target, scheduler_->NextDue());
    const uint64_t event = delivery_->NextEvent();
    if (event != Delivery::kNever) next = std::min(next, event - std::min(event, filled_));
    const uint64_t send = delivery_->UntilNextSend();
    if (player_->IsRunning() && send != Delivery::kNever)
      next = std::min(next, ProcessClock() + send);
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

}  // namespace vexel::client
