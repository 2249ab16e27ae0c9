// The engine: joins the movie player to the client.
//
// It is a player, and does for it what a platform does; it is a renderer, which
// the client's calls reach through the thread manager; it is told of events on
// the site, and answers for the files that movies load.
//
// A stream comes in one of two layouts. A linear one brings single messages:
// definitions go straight into the movie's dictionary, and frames wait in a
// ring until the client's clock reaches them. A non-linear one brings the movie
// file, which the ordinary reader takes, and the player runs by the client's
// clock.
//
// Everything happens on the client's one thread, but not one call at a time: a
// redraw leads to an event inside the call, and actions lead to the client's
// player, which may call back.
#pragma once

#include "base/ztcallback.h"
#include "host/frame_ring.h"
#include "host/on_packet_handler.h"
#include "player/splayer.h"
#include "zem/zem.h"

union _XEvent;

namespace vexel {

class CDamageManager;
class CDeScatterizer;
class CRenderThreadManager;
class HTTPPostServer;

// What a load is for. Owned by whoever holds the pointer.
struct LoadInfo {
  INT32 layer = -1;        // -1: the load goes to a sprite
  char* target = nullptr;  // owned (CreateStr): the sprite's path, or null
  bool loadVars = false;   // variables come, not a movie

  LoadInfo() = default;
  ~LoadInfo();
  LoadInfo(const LoadInfo&) = delete;
  LoadInfo& operator=(const LoadInfo&) = delete;
};

// Joins a source of bytes to the movie that reads them.
class StreamData {
 public:
  StreamData() = default;
  ~StreamData();
  StreamData(const StreamData&) = delete;
  StreamData& operator=(const StreamData&) = delete;

  // Null once the movie was deleted, or emptied for another.
  ScriptPlayer* Reader() const;
  void Link(ScriptPlayer* movie);
  // Takes a copy.
  void SetURL(const char* newURL);

  char* url = nullptr;  // owned (CreateStr): where the bytes come from
  bool linked = false;  // it has had a reader

 private:
  WeakSlot<ScriptThread> reader;
};

// Where a load stands. Each answer of a file service belongs to one state, or
// two, and is refused in all others.
enum LoadState : INT32 {
  kNoLoad = 0,
  kGetManager = 3,  // the file system manager is starting
  kGetObject = 4,   // the file object is on its way
  kGetOpening = 5,
  kGetReading = 6,
  kGetClosing = 7,
  kPostManager = 8,
  kPostObject = 9,
  kPostOpening = 11,
  kPostReading = 12,
  kPostClosing = 13,
};

// `m_nHoldMode`: what is to be done with frames behind a missing one. Modes 1
// and 2 are alike.
inline constexpr INT32 kHoldNever = 0;  // play them
inline constexpr INT32 kHoldDefault = 1;
inline constexpr INT32 kHoldAlways = 2;

// The bases are in the order of the interfaces' tables. Starts with a count of
// 0. References in a circle (files, timer) are broken by Shutdown.
class CVexelEngine : public IZEMRenderer,
                     public IZEMSiteUser,
                     public IOnPacketHandler,
                     public IZEMContextMenuResponse,
                     public IZEMFileSystemManagerResponse,
                     public IZEMFileResponse,
                     public ZTCallbackResponse,
                     public SPlayer {
 public:
  CVexelEngine();

  // --- Life (vexel_engine.cpp) ---

  // IUnknown, IZEMRenderer, IZEMSiteUser and IZEMContextMenuResponse.
  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;

  // All three are not counted, and may be null: each is set again before its
  // target goes.
  void SetDamageManager(CDamageManager* manager) { m_pDamageManager = manager; }
  void SetThreadManager(CRenderThreadManager* manager) { m_pThreadManager = manager; }
  void SetDeScatterizer(CDeScatterizer* reassembler) { m_pDeScatterizer = reassembler; }

  // To be called by the owner before it lets go: ends a load and the clock
  // behind the stream's end, whose services hold this object, and forgets the
  // menu and the three above. Calls may still come afterwards, and do nothing.
  void Shutdown();

  // Texts of the plug-in; static.
  static INT32 GetPluginInfo(INT32& loadMultiple, const char*& description, const char*& copyright,
                             const char*& moreInfo, UINT32& version);

  // --- The stream (engine_stream.cpp) ---

  INT32 GetRendererInfo(const char**& mimeTypes, UINT32& granularity) override;
  INT32 StartStream(IZEMStream* stream, IZEMPlayer* player) override;
  INT32 EndStream() override;
  INT32 OnHeader(IZEMValues* header) override;
  // A finished message, or the next bytes of the file.
  INT32 OnPacket(IZEMPacket* packet, INT32 timeOffset) override;
  INT32 OnTimeSync(UINT32 time) override;
  INT32 OnPreSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnPostSeek(UINT32 oldTime, UINT32 newTime) override;
  INT32 OnPause(UINT32 time) override;
  INT32 OnBegin(UINT32 time) override;
  INT32 OnBuffering(UINT32 reason, UINT16 percent) override;
  INT32 GetDisplayType(UINT32& type, IZEMBuffer*& info) override;
  INT32 OnEndofPackets() override;
  // ZEM_FAILED for "not now": the reader stands there.
  INT32 AddLateWriteBuffer(IZEMBuffer* buffer) override;
  INT32 HandleCallback(UINT32 time, UINT32 arg) override;

  INT32 CheckStreamVersions(IZEMValues* header);
  // Offers the MIME type `name` to the client as one that a newer plug-in is
  // needed for.
  INT32 AddMimeToUpgradeCollection(const char* name);
  // The movie misses a character: the stream is asked for it.
  void RequestLostCharacter(UINT16 id);

  // --- The site (engine_site.cpp, engine_events.cpp) ---

  INT32 AttachSite(IZEMSite* site) override;
  INT32 DetachSite() override;
  INT32 NeedsWindowedSites() override { return 0; }
  INT32 HandleEvent(_QKxEvent* event) override;

  // The size of the picture, pixels.
  _QKxSize GetMediaSize() const { return {m_lWidth, m_lHeight}; }
  void SetBufferSize(_QKxSize size);
  // Damages what changed; with bit 0 of `mode` draws it and lets the site show
  // it at once.
  void Update(INT32 mode);
  // Draws what changed and copies the whole picture to the damage manager.
  void UpdateDoubleBuffer();
  // Makes the player's bitmap if it has none of the right size, and with `draw`
  // brings it up to date. True if what it shows is valid, also when there is
  // nothing to show.
  bool UpdateBuffer(bool draw);
  void DamageRect(_QKxRect rect);
  void ForceRedraw();

  void CheckUpdate() override;
  void UpdateScreen() override;
  void ClientRect(SRECT* out) override;
  void UpdateCursor(int32_t cursor) override;

  // The site has no pointer to capture, and no status line; the client's clock
  // is the timer, and a stream ends with its renderer.
  bool StartTimer() override { return true; }
  void StopTimer() override {}
  void XSetCapture() override {}
  void XReleaseCapture() override {}
  void ShowStatus(const char*) override {}
  void CloseStream(ScriptPlayer*) override {}

  void XPlay() override;
  void XStopPlay() override;
  void XSeek(int32_t frame) override;

  // --- Addresses (engine_url.cpp) ---

  void GetURL(const char* url, const char* target, const char* postData, int32_t flags) override;

  // `out` becomes `url` as seen from `base`, for FreeStr, in place of what it
  // was; it stays as it is if either is null. "../" stays in it.
  static void CreateURL(const char* base, const char* url, char*& out);
  // The same with "../" and a leading slash resolved; for FreeStr, null without
  // memory.
  static char* BuildRelative(const char* base, const char* relative);

  // --- Loads (engine_load.cpp) ---

  INT32 InitDone(INT32 status) override;
  INT32 FileObjectReady(INT32 status, IUnknown* object) override;
  INT32 DirObjectReady(INT32 status, IUnknown* object) override;
  INT32 CloseDone(INT32 status) override;
  INT32 ReadDone(INT32 status, IZEMBuffer* buffer) override;
  INT32 WriteDone(INT32 status) override;
  INT32 SeekDone(INT32 status) override;

  // --- The menu and the user's preferences (engine_menu.cpp) ---

  virtual INT32 InitPlugin(IUnknown* context);
  INT32 OnCommand(UINT16 id) override;
  INT32 OnCanceled() override { return ZEM_OK; }
  // `quality`, 0 to 4, keeps its value where the user set none.
  INT32 GetQualityPreference(UINT16& quality);

  // For a look from outside.
  const FrameRing& WaitingFrames() const { return m_Ring; }
  bool IsLoading() const { return m_bLoading; }
  bool IsInTimeSync() const { return m_bInTimeSync; }
  INT32 HoldMode() const { return m_nHoldMode; }
  // What the pointer should look like: 0, 1 a view that can be moved, 2 a
  // button, 3 text that can be selected.
  INT32 PointerShape() const { return m_nCursor; }

 protected:
  ~CVexelEngine() override;

 private:
  // An object of the client's, with a reference; `out` stays as it is without.
  template <class T>
  INT32 CreateObject(const ZEMID& id, T*& out) {
    void* made = nullptr;
    if (!m_pClassFactory) return ZEM_UNEXPECTED;
    const INT32 result = m_pClassFactory->CreateInstance(id, &made);
    if (result < 0) return result;
    if (!made) return ZEM_FAILED;
    out = static_cast<T*>(made);
    return result;
  }
  // engine_stream.cpp
  void SetMode(bool nonLinear, UINT32 numPackets);
  void StartMovie(const UINT8* head, INT32 size);
  void TakeMessage(IZEMPacket* packet, const UINT8* data, INT32 size);
  void TakeFrame(IZEMPacket* packet, UINT8 head);
  void ApplyFrame(const UINT8* data, INT32 size);
  void PlayDueFrames(UINT32 time);
  void StartCallback(UINT32 time);
  void ScheduleCallback();
  void StopCallback();
  // engine_site.cpp
  void SetPictureSize(_QKxSize size);
  // engine_events.cpp
  bool KeyPressed(_XEvent* event);
  // engine_url.cpp
  bool DoCommand(const char* url);
  bool OpenInPlayer(const char* url, const char* target);
  void NSGetURL(const char* url, const char* target, const char* postData);
  // Takes `info` over, which is null for a navigation.
  void NetscapeDoURL(const char* url, const char* target, const char* postData, LoadInfo* info);
  void LoadLayer(const char* url, INT32 layer, const char* postData, const char* target,
                 INT32 flags);
  // Both take `notify` over.
  void DoGetURLNotify(const char* url, const char* target, LoadInfo* notify);
  void DoPostURLNotify(const char* url, const char* target, UINT32 length, const char* buffer,
                       LoadInfo* notify);
  void PostNavigation(const char* url, const char* target, UINT32 length, const char* buffer);
  // engine_load.cpp
  bool BeginLoad(const char* url);
  void StartFileSystem(LoadState state);
  void DropLoad(const char* url, LoadInfo* info);
  INT32 RequestFile();
  INT32 SetContentLength(IZEMRequest* request);
  INT32 FileOpened();
  void FailLoad();
  void StopLoad();
  void ReadOn();
  void CloseFile();
  ScriptPlayer* OpenTarget(const LoadInfo* info);
  // Takes `info` over.
  void StreamInNew(StreamData* data, const char* url, LoadInfo* info);
  INT32 StreamInWrite(StreamData* data, const UINT8* bytes, INT32 length);
  void StreamInDestroy(StreamData* data);

  INT32 m_lRefCount = 0;
  // All interface pointers are held with a reference, unless told otherwise.
  IUnknown* m_pContext = nullptr;
  IZEMCommonClassFactory* m_pClassFactory = nullptr;
  IZEMStream* m_pStream = nullptr;  // from StartStream to EndStream
  IZEMPlayer* m_pPlayer = nullptr;
  IZEMBackChannel* m_pBackChannel = nullptr;  // null for a source that cannot send again
  IZEMHyperNavigate* m_pHyperNavigate = nullptr;
  IZEMErrorMessages* m_pErrorMessages = nullptr;
  UINT32 m_ulStreamVersion = 0;
  UINT32 m_ulContentVersion = 0;
  UINT32 m_ulDuration = 0;  // milliseconds; 0xFFFFFFFF if the header has none
  UINT32 m_ulMovieVersion = 0;
  INT32 m_nHoldMode = kHoldAlways;
  IZEMValues* m_pHeader = nullptr;
  INT32 m_lWidth = 0, m_lHeight = 0;  // of the picture, pixels
  FrameRing m_Ring;                   // frames of a linear stream
  INT32 m_nLastSequence = 0;          // of the last frame; -1 while one is missing
  UINT32 m_ulLastTimeSync = 0;        // milliseconds of the stream
  UINT32 m_ulLastTimeSyncTicks = 0;   // GetTickCount at that call
  bool m_bInTimeSync = false;
  bool m_bBufferSizeChanged = false;  // the player's bitmap has another size
  bool m_bHighQualityAllowed = true;
  CDamageManager* m_pDamageManager = nullptr;        // not owned
  CDeScatterizer* m_pDeScatterizer = nullptr;        // not owned
  CRenderThreadManager* m_pThreadManager = nullptr;  // not owned
  IZEMContextMenu* m_pContextMenu = nullptr;
  SPOINT m_ZoomPoint = {0, 0};  // pixels: the middle of the picture
  bool m_bMouseDown = false;
  UINT32 m_ulLastBlink = 0;                        // stream time of the text cursor's last change
  char* m_pszURL = nullptr;                        // owned: the stream's, base of relative ones
  char* m_pszLoadURL = nullptr;                    // owned: the full one that is being loaded
  LoadInfo* m_pLoadInfo = nullptr;                 // owned, until the file is open
  IZEMFileSystemManager* m_pFileSystem = nullptr;  // while opening
  IZEMFileObject* m_pFileObject = nullptr;
  bool m_bFirstStream = true;
  StreamData m_MainStream;                  // the client's stream
  StreamData m_LoadStream;                  // the load in progress
  bool m_bLoading = false;                  // no other load can start
  IZEMBuffer* m_pPostBuffer = nullptr;      // body of a POST load
  HTTPPostServer* m_pPostServer = nullptr;  // made at the first navigation with data
  INT32 m_nFileState = kNoLoad;
  // Set while a read is being asked for, so that an answer inside the call goes
  // on in a loop and does not nest.
  bool m_bAskingToRead = false;
  bool m_bReadAnswered = false;
  bool m_bReadMore = false;
  UINT32 m_ulNumPackets = 0;  // of a non-linear stream
  bool m_bNonLinear = false;
  bool m_bShutDown = false;           // nothing begins any more that would hold this object
  bool m_bDestroying = false;         // counts no longer matter
  ZTCallback* m_pCallback = nullptr;  // the clock behind the stream's end
  bool m_bSiteAttached = false;
  bool m_bCallbackStarted = false;
  INT32 m_nCursor = 0;  // PointerShape
};

// The player's notifier of a missing character; `engine` is a CVexelEngine.
void LostCharacter(void* engine, uint16_t id);

}  // namespace vexel
