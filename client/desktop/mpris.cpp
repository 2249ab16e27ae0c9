// GLib's D-Bus checks the calls against the description below (which
// interfaces, methods and properties there are, with which types, what may be
// written), so what comes through has the right form, and only its values are
// to be doubted.
#include "client/desktop/mpris.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <span>
#include <utility>

#include "client/desktop/transport_bar.h"

namespace vexel::client {

namespace {

using State = Mpris::State;

constexpr char kName[] = "org.mpris.MediaPlayer2.vexel";
constexpr char kPath[] = "/org/mpris/MediaPlayer2";
constexpr char kRoot[] = "org.mpris.MediaPlayer2";
constexpr char kPlayer[] = "org.mpris.MediaPlayer2.Player";
// What the desktop knows the program by: its .desktop file's name.
constexpr char kDesktopEntry[] = "org.vexel.Player";
constexpr char kMovies[] = "/org/vexel/Player/movie/";  // then the number

constexpr const char* kSchemes[] = {"file", "http", "https", nullptr};
constexpr const char* kTypes[] = {"application/x-brightarc-vexel", "application/x-brightarc-vexel2",
                                  nullptr};

// Not told when it changes, but when it jumps.
constexpr char kPlace[] = "Position";

constexpr int64_t kUsPerMs = 1000;
// How far a running movie may be from where others think it is before they are
// told, milliseconds: more than the time between two calls of Tell.
constexpr double kTolerance = 250;

constexpr char kDescription[] = R"(<node>
<interface name="org.mpris.MediaPlayer2">
  <method name="Raise"/>
  <method name="Quit"/>
  <property name="CanRaise" type="b" access="read"/>
  <property name="CanQuit" type="b" access="read"/>
  <property name="CanSetFullscreen" type="b" access="read"/>
  <property name="Fullscreen" type="b" access="readwrite"/>
  <property name="HasTrackList" type="b" access="read"/>
  <property name="Identity" type="s" access="read"/>
  <property name="DesktopEntry" type="s" access="read"/>
  <property name="SupportedUriSchemes" type="as" access="read"/>
  <property name="SupportedMimeTypes" type="as" access="read"/>
</interface>
<interface name="org.mpris.MediaPlayer2.Player">
  <method name="Next"/>
  <method name="Previous"/>
  <method name="Pause"/>
  <method name="PlayPause"/>
  <method name="Stop"/>
  <method name="Play"/>
  <method name="Seek"><arg direction="in" type="x" name="Offset"/></method>
  <method name="SetPosition">
    <arg direction="in" type="o" name="TrackId"/>
    <arg direction="in" type="x" name="Position"/>
  </method>
  <method name="OpenUri"><arg direction="in" type="s" name="Uri"/></method>
  <signal name="Seeked"><arg type="x" name="Position"/></signal>
  <property name="PlaybackStatus" type="s" access="read"/>
  <property name="LoopStatus" type="s" access="readwrite"/>
  <property name="Rate" type="d" access="readwrite"/>
  <property name="MinimumRate" type="d" access="read"/>
  <property name="MaximumRate" type="d" access="read"/>
  <property name="Metadata" type="a{sv}" access="read"/>
  <property name="Position" type="x" access="read">
    <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
  </property>
  <property name="CanGoNext" type="b" access="read"/>
  <property name="CanGoPrevious" type="b" access="read"/>
  <property name="CanPlay" type="b" access="read"/>
  <property name="CanPause" type="b" access="read"/>
  <property name="CanSeek" type="b" access="read"/>
  <property name="CanControl" type="b" access="read"/>
</interface>
</node>)";

// A text as the bus takes it, whatever a name or an address holds.
GVariant* Text(const std::string& text) {
  return g_variant_new_take_string(g_utf8_make_valid(text.data(), static_cast<int>(text.size())));
}

std::string TrackOf(const State& now) {
  return kMovies + std::to_string(now.movie);
}

GVariant* Yes(const State&) {
  return g_variant_new_boolean(TRUE);
}

GVariant* No(const State&) {
  return g_variant_new_boolean(FALSE);
}

GVariant* IsPlayable(const State& now) {
  return g_variant_new_boolean(now.playable);
}

GVariant* Metadata(const State& now) {
  GVariantDict about;
  g_variant_dict_init(&about, nullptr);
  if (now.movie != 0) {
    g_variant_dict_insert_value(&about, "mpris:trackid",
                                g_variant_new_object_path(TrackOf(now).c_str()));
    g_variant_dict_insert_value(&about, "xesam:title", Text(now.title));
    g_variant_dict_insert_value(&about, "xesam:url", Text(now.uri));
    if (now.length > 0)
      g_variant_dict_insert_value(&about, "mpris:length",
                                  g_variant_new_int64(now.length * kUsPerMs));
  }
  return g_variant_dict_end(&about);
}

const char* StatusOf(const State& now) {
  if (now.running) return "Playing";
  return now.playable && now.position > 0 ? "Paused" : "Stopped";
}

constexpr const char* kDone = nullptr;

bool IsKnown(const char* scheme) {
  return scheme && std::any_of(kSchemes, std::end(kSchemes) - 1, [scheme](const char* known) {
           return g_ascii_strcasecmp(scheme, known) == 0;
         });
}

}  // namespace

struct Mpris::Tables {
  // The functions of both tables return kDone, or a text for people: why it was
  // not done.
  struct Method {
    const char* name;
    const char* (*run)(Mpris* self, GVariant* arguments);
  };
  struct Property {
    const char* interface;
    const char* name;
    GVariant* (*get)(const State& now);
    const char* (*set)(Mpris* self, GVariant* value);  // null: cannot be written
  };

  static const char* SetPosition(Mpris* self, GVariant* arguments) {
    const char* track = nullptr;
    int64_t place = 0;
    g_variant_get(arguments, "(&ox)", &track, &place);
    const State now = self->state_();
    // A caller that still thinks of another movie means nothing by it.
    if (track != TrackOf(now) || !now.seekable) return kDone;
    if (place < 0 || place > now.length * kUsPerMs) return "The movie has no such place.";
    self->Go(place / kUsPerMs);
    return kDone;
  }

  static const char* Seek(Mpris* self, GVariant* arguments) {
    int64_t way = 0;
    g_variant_get(arguments, "(x)", &way);
    const State now = self->state_();
    const int64_t place = now.position + way / kUsPerMs;
    // Behind the end there is the next movie, which there is not.
    if (now.seekable && place <= now.length) self->Go(place);
    return kDone;
  }

  static const char* OpenUri(Mpris* self, GVariant* arguments) {
    const char* uri = nullptr;
    g_variant_get(arguments, "(&s)", &uri);
    char* scheme = g_uri_parse_scheme(uri);
    const bool known = IsKnown(scheme);
    g_free(scheme);
    if (!known) return "Addresses of this kind cannot be opened.";
    self->actions_.open(uri);
    return kDone;
  }

  static const char* SetRate(Mpris* self, GVariant* value) {
    const double rate = g_variant_get_double(value);
    if (rate == 0) {
      self->Run(false);
      return kDone;
    }
    if (!(rate >= kSlowest && rate <= kFastest)) return "There is no such rate.";
    self->actions_.setSpeed(rate);
    return kDone;
  }

  static const char* SetLoopStatus(Mpris* self, GVariant* value) {
    const std::string status = g_variant_get_string(value, nullptr);
    if (status != "None" && status != "Track") return "A movie can be repeated, and no more.";
    self->actions_.setLoop(status == "Track");
    return kDone;
  }

  static const char* SetFullScreen(Mpris* self, GVariant* value) {
    self->actions_.setFullScreen(g_variant_get_boolean(value));
    return kDone;
  }

  static const Method kMethods[];
  static const Property kProperties[];

  static const Property* Find(const char* interface, const char* name);
  static void OnBus(GDBusConnection* bus, const char*, gpointer self);
  static void OnNameLost(GDBusConnection* bus, const char*, gpointer self);
  static void OnCall(GDBusConnection*, const char*, const char*, const char*, const char* name,
                     GVariant* arguments, GDBusMethodInvocation* call, gpointer self);
  static GVariant* OnGet(GDBusConnection*, const char*, const char*, const char* interface,
                         const char* name, GError** error, gpointer self);
  static gboolean OnSet(GDBusConnection*, const char*, const char*, const char* interface,
                        const char* name, GVariant* value, GError** error, gpointer self);
};

// --- What there is ---

const Mpris::Tables::Method Mpris::Tables::kMethods[] = {
    {"Raise", [](Mpris* self, GVariant*) { return self->actions_.raise(), kDone; }},
    {"Quit", [](Mpris* self, GVariant*) { return self->actions_.quit(), kDone; }},
    {"Next", [](Mpris*, GVariant*) { return kDone; }},
    {"Previous", [](Mpris*, GVariant*) { return kDone; }},
    {"Play", [](Mpris* self, GVariant*) { return self->Run(true), kDone; }},
    {"Pause", [](Mpris* self, GVariant*) { return self->Run(false), kDone; }},
    {"PlayPause", [](Mpris* self, GVariant*) { return self->actions_.playOrPause(), kDone; }},
    {"Stop", [](Mpris* self, GVariant*) { return self->Run(false), self->Go(0), kDone; }},
    {"Seek", Seek},
    {"SetPosition", SetPosition},
    {"OpenUri", OpenUri},
};

const Mpris::Tables::Property Mpris::Tables::kProperties[] = {
    {kRoot, "CanRaise", Yes, nullptr},
    {kRoot, "CanQuit", Yes, nullptr},
    {kRoot, "CanSetFullscreen", Yes, nullptr},
    {kRoot, "Fullscreen", [](const State& now) { return g_variant_new_boolean(now.fullScreen); },
     SetFullScreen},
    {kRoot, "HasTrackList", No, nullptr},
    {kRoot, "Identity", [](const State&) { return g_variant_new_string("Vexel"); }, nullptr},
    {kRoot, "DesktopEntry", [](const State&) { return g_variant_new_string(kDesktopEntry); },
     nullptr},
    {kRoot, "SupportedUriSchemes", [](const State&) { return g_variant_new_strv(kSchemes, -1); },
     nullptr},
    {kRoot, "SupportedMimeTypes", [](const State&) { return g_variant_new_strv(kTypes, -1); },
     nullptr},
    {kPlayer, "PlaybackStatus",
     [](const State& now) { return g_variant_new_string(StatusOf(now)); }, nullptr},
    {kPlayer, "LoopStatus",
     [](const State& now) { return g_variant_new_string(now.loops ? "Track" : "None"); },
     SetLoopStatus},
    {kPlayer, "Rate", [](const State& now) { return g_variant_new_double(now.speed); }, SetRate},
    {kPlayer, "MinimumRate", [](const State&) { return g_variant_new_double(kSlowest); }, nullptr},
    {kPlayer, "MaximumRate", [](const State&) { return g_variant_new_double(kFastest); }, nullptr},
    {kPlayer, "Metadata", Metadata, nullptr},
    {kPlayer, kPlace, [](const State& now) { return g_variant_new_int64(now.position * kUsPerMs); },
     nullptr},
    {kPlayer, "CanGoNext", No, nullptr},
    {kPlayer, "CanGoPrevious", No, nullptr},
    {kPlayer, "CanPlay", IsPlayable, nullptr},
    {kPlayer, "CanPause", IsPlayable, nullptr},
    {kPlayer, "CanSeek", [](const State& now) { return g_variant_new_boolean(now.seekable); },
     nullptr},
    {kPlayer, "CanControl", Yes, nullptr},
};

// --- Calls of the bus ---

const Mpris::Tables::Property* Mpris::Tables::Find(const char* interface, const char* name) {
  const auto* const one =
      std::find_if(std::begin(kProperties), std::end(kProperties), [=](const Property& row) {
        return std::strcmp(row.interface, interface) == 0 && std::strcmp(row.name, name) == 0;
      });
  return one == std::end(kProperties) ? nullptr : one;
}

void Mpris::Tables::OnCall(GDBusConnection*, const char*, const char*, const char*,
                           const char* name, GVariant* arguments, GDBusMethodInvocation* call,
                           gpointer data) {
  auto* self = static_cast<Mpris*>(data);
  const auto* const one =
      std::find_if(std::begin(kMethods), std::end(kMethods),
                   [name](const Method& row) { return std::strcmp(row.name, name) == 0; });
  const char* problem =
      one == std::end(kMethods) ? "There is no such method." : one->run(self, arguments);
  if (problem) {
    g_dbus_method_invocation_return_error_literal(call, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                  problem);
  } else {
    g_dbus_method_invocation_return_value(call, nullptr);
  }
  self->Tell();
}

GVariant* Mpris::Tables::OnGet(GDBusConnection*, const char*, const char*, const char* interface,
                               const char* name, GError** error, gpointer self) {
  if (const Property* one = Find(interface, name))
    return one->get(static_cast<Mpris*>(self)->state_());
  g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY,
                      "There is no such property.");
  return nullptr;
}

gboolean Mpris::Tables::OnSet(GDBusConnection*, const char*, const char*, const char* interface,
                              const char* name, GVariant* value, GError** error, gpointer data) {
  auto* self = static_cast<Mpris*>(data);
  const Property* one = Find(interface, name);
  const char* problem = one && one->set ? one->set(self, value) : "It cannot be written.";
  if (problem) g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, problem);
  self->Tell();
  return !problem;
}

void Mpris::Tables::OnBus(GDBusConnection* bus, const char*, gpointer data) {
  static constexpr GDBusInterfaceVTable kCalls = {OnCall, OnGet, OnSet, {}};
  auto* self = static_cast<Mpris*>(data);
  // The movie goes on if the session's bus does not.
  g_dbus_connection_set_exit_on_close(bus, FALSE);
  self->bus_ = G_DBUS_CONNECTION(g_object_ref(bus));
  for (size_t i = 0; i < std::size(self->objects_); ++i)
    self->objects_[i] = g_dbus_connection_register_object(
        bus, kPath, self->interfaces_->interfaces[i], &kCalls, self, nullptr, nullptr);
}

void Mpris::Tables::OnNameLost(GDBusConnection* bus, const char*, gpointer data) {
  auto* self = static_cast<Mpris*>(data);
  if (!bus || g_dbus_connection_is_closed(bus) || self->otherName_ != 0) return;
  const std::string other = std::string(kName) + ".instance" + std::to_string(getpid());
  self->otherName_ = g_bus_own_name_on_connection(
      bus, other.c_str(), G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE, nullptr, nullptr, nullptr, nullptr);
}

// --- The window's side ---

Mpris::Mpris(Actions actions, std::function<State()> state)
    : actions_(std::move(actions)),
      state_(std::move(state)),
      interfaces_(g_dbus_node_info_new_for_xml(kDescription, nullptr)),
      name_(g_bus_own_name(G_BUS_TYPE_SESSION, kName, G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE,
                           Tables::OnBus, nullptr, Tables::OnNameLost, this, nullptr)) {}

Mpris::~Mpris() {
  if (otherName_ != 0) g_bus_unown_name(otherName_);
  g_bus_unown_name(name_);
  if (bus_) {
    for (const unsigned object : objects_) g_dbus_connection_unregister_object(bus_, object);
    g_dbus_connection_flush_sync(bus_, nullptr, nullptr);
    g_object_unref(bus_);
  }
  g_dbus_node_info_unref(interfaces_);
}

void Mpris::Run(bool run) {
  if (state_().running != run) actions_.playOrPause();
}

void Mpris::Go(int64_t ms) {
  const State now = state_();
  if (!now.seekable) return;
  actions_.seek(static_cast<uint32_t>(std::clamp<int64_t>(ms, 0, now.length)));
  went_ = true;
}

void Mpris::Tell() {
  if (!bus_) return;
  const State now = state_();
  if (told_) TellChanges(now);
  TellPlace(now);
  told_ = now;
}

void Mpris::TellChanges(const State& now) {
  for (const char* interface : {kRoot, kPlayer}) {
    GVariantDict changed;
    g_variant_dict_init(&changed, nullptr);
    bool any = false;
    for (const Tables::Property& one : Tables::kProperties) {
      if (std::strcmp(one.interface, interface) != 0 || std::strcmp(one.name, kPlace) == 0)
        continue;
      GVariant* before = g_variant_ref_sink(one.get(*told_));
      GVariant* value = g_variant_ref_sink(one.get(now));
      if (!g_variant_equal(before, value)) {
        g_variant_dict_insert_value(&changed, one.name, value);
        any = true;
      }
      g_variant_unref(before);
      g_variant_unref(value);
    }
    GVariant* list = g_variant_ref_sink(g_variant_dict_end(&changed));
    if (any)
      g_dbus_connection_emit_signal(
          bus_, nullptr, kPath, "org.freedesktop.DBus.Properties", "PropertiesChanged",
          g_variant_new("(s@a{sv}as)", interface, list, nullptr), nullptr);
    g_variant_unref(list);
  }
}

void Mpris::TellPlace(const State& now) {
  const int64_t time = g_get_monotonic_time();
  const bool same = told_ && told_->movie == now.movie;
  bool jumped = false;
  if (same && now.seekable && !now.buffering) {
    double believed = placeTold_;
    if (told_->running)
      believed += static_cast<double>(time - placeToldAt_) / kUsPerMs * told_->speed;
    const double off = std::abs(now.position - believed);
    jumped = went_ || off > (told_->running || now.running ? kTolerance : 0);
  }
  went_ = false;
  if (jumped)
    g_dbus_connection_emit_signal(bus_, nullptr, kPath, kPlayer, "Seeked",
                                  g_variant_new("(x)", now.position * kUsPerMs), nullptr);
  if (jumped || !same || told_->running != now.running || told_->speed != now.speed) {
    placeTold_ = now.position;
    placeToldAt_ = time;
  }
}

}  // namespace vexel::client
