// The movie player: the movie of layer 0, the stage that all layers share, the
// drawing buffer, and the run loop with its frame catch-up. What a platform
// does is left to a derived class, so a player runs as well in a plug-in as in
// a tool or a test: bytes and a clock in, pixels out.
#pragma once

#include <cstdint>

#include "geometry/matrix.h"
#include "geometry/point.h"
#include "geometry/rect.h"
#include "movie/script_player.h"
#include "movie/weak.h"
#include "player/action_cache.h"
#include "player/script_stack.h"
#include "raster/bit_buffer.h"
#include "stage/display_list.h"
#include "text/save_focus.h"

namespace vexel {

// Low 4 bits of `scaleMode`, as DisplayList::SetCamera takes them.
inline constexpr int32_t kScaleFit = 0;
inline constexpr int32_t kScaleFixed = 3;
// A bit of `scaleMode`: Zoom100 shows the movie's top left at its own size.
inline constexpr int32_t kScaleTopLeft = 0x1000;

// What SetCamera does to the screen afterwards.
enum CameraUpdate : int32_t {
  kCameraOnly = 0,
  kCameraShowNow = 1,   // UpdateScreen
  kCameraShowSoon = 2,  // CheckUpdate
};

// `mouseState`: the pointer is not on the stage, or its button is up or down.
inline constexpr int32_t kMouseUnknown = -1;
inline constexpr int32_t kMouseUp = 0;
inline constexpr int32_t kMouseDown = 1;

// `mode` of Pan.
inline constexpr int32_t kPanPixels = 0;
inline constexpr int32_t kPanPercent = 1;

class ActionTrace;

// Of the built-in fonts. A failure is not tried again.
enum class FontState : uint8_t { kNotTried = 0, kLoaded = 1, kFailed = 2 };

class SPlayer : public ScriptPlayer {
 public:
  SPlayer();
  // Calls no platform operation: those are gone by then. Defined here because
  // the core is built without run-time type information: with no virtual
  // function defined in a source of the core, a platform that has it emits its
  // own.
  virtual ~SPlayer() { TearDown(); }

  // --- Platform operations; the player calls them, and they may call back ---

  // Bring the screen up to date at the next convenient moment, drawing only
  // what is dirty.
  virtual void CheckUpdate() = 0;
  // Draw the dirty parts and show them now.
  virtual void UpdateScreen() = 0;
  // Make the run loop start; true on success.
  virtual bool StartTimer() = 0;
  virtual void StopTimer() = 0;
  // The display area in pixels, with its origin at 0, 0.
  virtual void ClientRect(SRECT* out) = 0;
  // Route all pointer events here, from a press on something that takes the
  // pointer until its release.
  virtual void XSetCapture() = 0;
  virtual void XReleaseCapture() = 0;
  // Go to `url` in the window `target`; `postData` is null for none. The texts
  // are valid only during the call.
  virtual void GetURL(const char* url, const char* target, const char* postData, int32_t flags) = 0;
  virtual void ShowStatus(const char* text) = 0;
  // Choose the pointer's shape from the state of the stage.
  virtual void UpdateCursor(int32_t cursor) = 0;
  // Stop the stream that feeds `movie`.
  virtual void CloseStream(ScriptPlayer* movie) = 0;
  // The host's clock: stop it, start it, move it to a frame.
  virtual void XStopPlay() = 0;
  virtual void XPlay() = 0;
  virtual void XSeek(int32_t frame) = 0;

  // --- Layers (layers.cpp) ---

  // The layer's movie, ready to take bytes; null when memory is out or the
  // number is not one of 0 to 65535. A layer that is open loses its movie,
  // unless `keepExisting`. Owned by the player.
  ScriptPlayer* OpenLayer(int32_t layer, bool keepExisting);
  // Takes a layer off the stage and deletes it; layer 0 is emptied instead.
  void ClearLayer(int32_t layer);
  // Deletes all further layers, and empties layer 0.
  void FreeLayers();
  // Stops, drops all layers and movies, and shows the empty stage.
  void ClearScript();
  // A new movie in the place of the sprite that `target` runs; null on any
  // failure, which leaves the sprite alone. Owned by its object on the stage.
  ScriptPlayer* OpenSprite(ScriptThread* target);

  // --- The run loop (play.cpp) ---

  // Plays to `time`, milliseconds since the movie's start on the host's clock:
  // steps every timeline as often as frames are due, running the actions of
  // each step; draws nothing. Does nothing before the first frame has been
  // shown, or while actions run. A clock that goes backward rewinds nothing.
  void DoPlay(uint32_t time);
  // One step of every timeline, and the actions that it queued. False if there
  // was no tag to read and nothing was queued: the next step would be the same.
  bool StepThreads();
  void Run();
  void Suspend();

  // Moves the root timeline to `frame`, stopped; its actions run at once
  // unless actions are running already.
  void GotoFrame(int32_t frame);
  void Rewind() { GotoFrame(0); }
  void Forward();
  void Back();
  int32_t CurrentFrame() const { return curFrame; }
  int32_t TotalFrames() const { return numFrames; }
  bool IsPlaying() const { return playing; }
  // Of the declared length; 0 before the header.
  int32_t PercentLoaded() const;
  bool FrameLoaded(int32_t frame) const { return numFramesComplete >= frame; }

  // Frees the pixels; the stage redraws all once it gets new ones.
  void FreeBuffer();

  // --- What part of the movie is shown (zoom.cpp) ---

  // Computes the camera anew; `update` is a CameraUpdate.
  void SetCamera(int32_t update);
  // Shows the whole movie.
  void Home();
  // Shows about `size` twentieths around `center`, kept inside the movie.
  void Zoom(SPOINT size, SPOINT center);
  void Zoom(const SRECT* rect);
  // Scales what is shown: 50 shows half of it, twice as large. 0 is Home.
  void Zoom(int32_t percent);
  // Scales what is shown by a 16.16 factor around `center` (pixels), or the
  // middle if null.
  void ZoomF(SFIXED scale, const SPOINT* center);
  void ZoomScale(SFIXED scale) { ZoomF(scale, nullptr); }
  // A movie pixel to a device pixel.
  void Zoom100();
  void SetZoomRect(int32_t left, int32_t top, int32_t right, int32_t bottom);
  // Moves what is shown: by pixels, or with kPanPercent by percent of the
  // client area. Nothing unless zoomed.
  void Pan(int32_t dx, int32_t dy, int32_t mode);

  // --- Actions (actions.cpp) ---

  // Runs all queued action blocks, those included that they queue themselves;
  // then tells the platform what they asked of it. Nothing before the first
  // frame has been shown, nor inside a run. Once a run has gone through too
  // many actions, no action runs ever again.
  void DoActions();
  // Runs the actions of one frame of `thread` at once, and shows the result.
  // False, with nothing run, for a null thread and a frame it doesn't have.
  bool CallFrame(ScriptThread* thread, int32_t frame);

  // The value stack, which outlives a run. Push copies; null pushes nothing,
  // and without memory the value is lost. Pop gives the caller a text for
  // FreeStr: an empty one from an empty stack, null without memory.
  void Push(const char* text);
  char* Pop();
  // Numbers are texts too: what is popped is what the text of the pushed
  // number reads as, 0 for a text that is none.
  void PushNum(double value);
  double PopNum();

  // --- Targets, variables and properties (targets.cpp, properties.cpp) ---

  // The timeline at the path of names separated by slashes, from `start`; null
  // if there is none. A leading slash starts at the top of the layer, ".." is
  // the parent, and a layer's name may begin a path.
  ScriptThread* FindTarget(SObject* start, const char* path);
  // The path of `object` from its layer's top, for FreeStr.
  char* GetTargetPath(SObject* object);
  // The timeline that `text`, "path:name" or "name", speaks of, from `thread`
  // or the player if that is null, or null; `*name` points into `text`.
  ScriptThread* ResolveVariable(const char* text, ScriptThread* thread, const char** name);
  // The same for "path:frame" or "frame", a number from 1 or a label; null if
  // it names no frame. `*frame` counts from 0.
  ScriptThread* ResolveFrameNum(const char* text, ScriptThread* thread, int32_t* frame);
  // The text of a variable, for FreeStr, or null; or, behind the name of a
  // text field's variable, ".scroll" and ".maxscroll", the lines that are and
  // can be the first one shown, counted from 1. SetVariable takes ".scroll",
  // and leaves the field with the focus alone unless `updateFocus`.
  char* GetVariable(ScriptThread* thread, const char* name);
  using ScriptThread::SetVariable;
  void SetVariable(ScriptThread* thread, const char* name, const char* value,
                   bool updateFocus = true);

  // The properties by number; 0 for a null thread and any other number.
  double GetProperty(ScriptThread* thread, int32_t index);
  void SetProperty(ScriptThread* thread, int32_t index, double value);
  // The same as texts. The result is for FreeStr, null for a null thread.
  char* GetPropertyStr(ScriptThread* thread, int32_t index);
  void SetPropertyStr(ScriptThread* thread, int32_t index, const char* value);

  // Defines the characters of the built-in fonts, the first time that it is
  // called; false if that failed then. They are found in `fontPlayer`.
  bool LoadBuiltInFonts();

  // A movie that takes a form-encoded text and, with SetDataComplete, gives
  // its fields to the timeline `target`, or to the layer without one, and
  // deletes itself. Null without memory.
  ScriptPlayer* OpenVariableLoader(int32_t layer, const char* target);

  // --- Pointer and keys (pointer.cpp, drag.cpp, keys.cpp, tab_order.cpp,
  // arrow_keys.cpp) ---

  // Points are pixels of the client area. Events before the first frame has
  // been shown are dropped; all of them run the actions that they cause.
  void MouseDown(const SPOINT* pt);
  void MouseMove(const SPOINT* pt, bool mouseIsDown);
  void MouseUp(const SPOINT* pt);
  // The pointer is at `pt`; or, from the keyboard, it acts on `button`, or
  // leaves the buttons if that is null.
  void DoButton(const SPOINT* pt, bool mouseIsDown, bool updateScreen);
  void DoButton(SObject* button, bool mouseIsDown, bool updateScreen);
  // The host took the pointer away; `clearMouse` forgets where it was.
  void CancelCapture(bool clearMouse);
  // The dragged object follows the pointer to `pt`.
  void UpdateDragObject(const SPOINT* pt);
  // Notes in the dragged object what lies under the pointer.
  void UpdateDropTarget();
  // True if something in the movie wanted the key: a KeyCode or a character,
  // with the bits of the modifiers.
  bool HandleKeyDown(int32_t key, int32_t modifiers);
  // Movies know no releases of keys.
  void HandleKeyUp(int32_t, int32_t) {}
  // A clipboard's answer to PlayerStartPaste, now or later: the text with the
  // focus takes `size` bytes in, and its variable with it, as if typed. False
  // if no text that can be edited has the focus.
  bool PasteText(const char* bytes, int32_t size);
  // The cursor of the focused text changes its phase; the host calls this about
  // every half second.
  void BlinkCursor();
  // The pointer draws a selection in the focused text.
  bool IsSelecting() const;
  // The text that has the focus loses it and its selection, and the clipboard
  // is told so.
  void ClearFocus();
  // The same for a press elsewhere: the cursor goes out as well, and a
  // selection that the pointer draws stays.
  void UnfocusText();
  // The keyboard moves to `text`, all of it selected.
  void FocusText(SObject* text);
  // An object is about to be freed.
  void ObjectFreed(const SObject* object);

  // A button, or an edit text, with the rectangle in device units by which it
  // is found again after it was placed anew.
  struct SButton {
    WeakSlot<SObject> button;
    SRECT bounds = {kEmptyCoord, kEmptyCoord, kEmptyCoord, kEmptyCoord};
    void Set(SObject* object, const SRECT& rect);
  };
  // An entry of the tab order, which rises by weight.
  struct ButtonWeight {
    SObject* button;
    SRECT bounds;
    int32_t weight;
  };
  // What lies up, down, right and left; null where nothing does.
  struct ButtonOrder {
    SObject* button[4] = {};
    SRECT bounds[4] = {};
  };

  // The keys that move the focus: true if they did, or a button keeps them.
  bool TabKeyDown(int32_t key, int32_t modifiers);
  // Presses and releases the button that has the focus.
  void ButtonEnter();
  // To the nearest button in a ButtonDirection, and along the tab order.
  void ButtonGoDirection(int32_t direction);
  void ButtonTabNext();
  void ButtonTabPrevious();
  void ButtonFocusSet(SObject* object);
  void ButtonFocusRemove();

  // Lists the seen buttons and the edit texts that can be edited below
  // `parent` behind those in `buttons`; returns how many they are.
  int32_t NumButtons(SObject* parent);
  // Without memory that one is not listed.
  void AddButton(SObject* object);
  void RemoveAllButtons();
  // All buttons of the stage in tab order, `buttonCount` of them, for delete[];
  // null for none and without memory.
  ButtonWeight* BuildButtonTabMap();
  static void ButtonSort(ButtonWeight* map, int32_t last);
  static int32_t CalcButtonWeight(const SRECT* rect);
  // The first button with exactly these bounds.
  bool ButtonFind(const SButton* wanted, SButton* found);
  // The best button in each direction from `current`.
  void ButtonOrdering(const SButton* current, ButtonOrder* order);

  DisplayList display;
  CBitBuffer bits;  // the off-screen picture

  bool highQuality = true;                  // anti-aliasing
  bool autoQuality = false;                 // the governor in DoPlay is on
  int32_t framesSinceQualityChange = 1000;  // so that the first decision need not wait
  bool bestQuality = false;                 // smooth bitmaps also in movies that move
  // Steps that took longer than a frame, less than a quarter of one, and all.
  // Never reset: the governor judges the whole run.
  int32_t behindCount = 0;
  int32_t aheadCount = 0;
  int32_t qualitySamples = 0;

  int32_t scaleMode = 0;
  SRECT zoomRect;  // the part shown, twentieths; empty when all of `frame` is

  ScriptStack stack;                   // the values of the action language
  ActionCache actionCache;             // of the block that runs
  ActionTrace* actionTrace = nullptr;  // not owned: sees each action, for tools

  int32_t bufferTime = 5;      // property 18: a number that scripts may keep here
  bool actionsHalted = false;  // a run went through too many actions; never cleared
  bool hostStopped = true;     // the host's clock stands; the platform keeps it

  WeakSlot<SObject> dragObject;  // what a script lets follow the pointer
  bool dragging = false;
  SPOINT dragPoint = {0, 0};  // where the pointer was when it last moved the object, pixels
  bool panning = false;       // a press on a zoomed view moves it
  SPOINT panPoint = {0, 0};   // pixels
  int32_t mouseState = kMouseUnknown;
  SPOINT mousePoint = {0, 0};  // pixels

  WeakSlot<SObject> focus;   // the text field that takes the keys
  SaveFocus saveFocus;       // and what is to have it again behind a seek
  bool cursorBlink = false;  // the cursor's phase: seen while set

  SButton focusButton;          // has the keyboard's focus
  SButton savedButton;          // had it before the last key
  SObject** buttons = nullptr;  // owned; listed anew before each use
  int32_t buttonCount = 0;
  int32_t buttonSize = 0;

  ScriptPlayer fontPlayer;  // the built-in font movie: characters only, never placed
  FontState fontState = FontState::kNotTried;

  uint32_t startTime;  // tick of the construction, origin of a script's time

  int32_t actionDepth = 0;     // 1 while DoActions runs
  uint32_t nextFrameTime = 0;  // when the next frame falls due, tick time
  bool loaded = false;         // the first frame has been shown
  bool running = false;        // StartTimer succeeded
  bool firstPlay = true;
  bool seekPending = false;  // the next DoPlay moves to `seekFrame` first
  int32_t seekFrame = 0;
  uint32_t lastPlayTime = 0;    // of the last DoPlay, milliseconds
  uint32_t lastPlayFrames = 0;  // and the frame position that this was

 private:
  void TearDown();
  void Govern(uint32_t elapsed);
  void ClientMatrix(MATRIX* out) const;
  void PanZoomRect(int32_t dx, int32_t dy);
  bool DrawSelection(const SPOINT* pt, bool mouseIsDown);
  bool PointAtText(SObject* text, const SPOINT* pt, bool mouseIsDown);
  bool FireButtonKey(int32_t key);
  void TabFromText();
  bool TextKeyDown(int32_t key, int32_t modifiers);
  void WriteText(const EditText* text);
};

// The layer `layer` in the list that starts at `head`, or null.
ScriptPlayer* FindLayer(ScriptPlayer* head, int32_t layer);

// The number in a layer's name, "_level3" or "_vexel3" in any case; 0 when no
// digit follows, and -1 for any other name and for null.
int32_t LayerNum(const char* name);

// Tells `movie` which player it runs in: its variable "$version" becomes the
// platform's name and the version of the language.
void SetVersionVariable(SPlayer* player, ScriptPlayer* movie);

}  // namespace vexel
