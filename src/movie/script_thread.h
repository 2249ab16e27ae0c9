// A running timeline: the root of a movie, or a placed sprite. It walks the
// tags in order, frame by frame; definitions go to the movie's dictionary,
// placements change the stage, action blocks are queued. Nothing here draws.
//
// Forward motion replays tags from where the timeline stands, and no state is
// kept per frame: going backward replays from the first tag, bracketed by the
// stage's hold, which keeps the objects that come out unchanged.
#pragma once

#include <cstdint>

#include "movie/character.h"
#include "movie/data_block.h"
#include "movie/fwd.h"
#include "movie/script_value.h"
#include "movie/sparser.h"
#include "movie/weak.h"

namespace vexel {

// Results of running tags; negative ones are errors.
enum ScriptResult : int32_t {
  kScriptOk = 0,
  kScriptWaiting = 1,  // the next tag has not wholly arrived
  kScriptAtEnd = 2,    // the closing tag was met
  kScriptBadHeader = -1,
  kScriptNoMemory = -2,  // also: the root object cannot be placed
};

// Not polymorphic: a sprite's timeline is deleted as a ScriptThread, a movie as
// a ScriptPlayer.
class ScriptThread : public SParser {
 public:
  ScriptThread();
  // Leaves the stage's list of timelines, with its queued actions.
  ~ScriptThread();
  ScriptThread(const ScriptThread&) = delete;
  ScriptThread& operator=(const ScriptThread&) = delete;

  // --- Running (timeline.cpp) ---

  // As new: no script, before the first frame, playing and looping. Keeps the
  // variables and the place on the stage.
  void ClearState();
  // Reads `tags` from now on, and keeps them alive. Positions stay as they are.
  void AttachScript(const DataSpan& tags);

  // All of these return a ScriptResult, or `scriptErr`.

  // Executes one tag. While it is incomplete nothing changes, and the next
  // call tries it again; likewise once the stage's allowance of tags is spent.
  int32_t DoTag();
  // Executes tags until `curFrame` reaches `frame`.
  int32_t DoTags(int32_t frame);
  // Brings the timeline to `frame`. With `seek` the actions of frames passed
  // are dropped, those of `frame` itself are queued, and the frame may lie
  // behind; without it all are queued, and the way leads forward only. Not
  // concerned with `playing`.
  int32_t DrawFrame(int32_t frame, bool seek);
  // Stops the timeline and moves it to `frame`, a negative one counting as 0.
  int32_t Seek(int32_t frame);

  // Steps a playing timeline by `delta` frames. A root timeline runs no further
  // than the frames that have arrived. At the end it goes back to frame 0, or
  // stops if it does not loop or has one frame only. With `force` a stopped one
  // moves too, and the frame is rebuilt as a backward seek does it, although the
  // timeline may stand there already.
  void DoFrame(int32_t delta, bool force = false);
  // With `rewind`, a timeline that stands at its end and does not loop starts
  // over.
  void Play(bool rewind);
  void StopPlay() { playing = false; }

  // The frame that a label stands in, by the tags that have arrived; -1 for
  // none.
  int32_t FindLabel(const char* label) const;

  // --- Tags that place (place_tags.cpp); `pos` stands at the tag's body ---

  void PlaceObject();
  void PlaceObject2();
  void RemoveObject();
  // PlaceObject of a frame that stands in for all earlier history: an object
  // that is there already, just so, stays untouched.
  void PlaceObjectSyncFrame();
  // The character 65534 at `layerDepth` under the stage's root, unless there is
  // one already. False if it cannot be placed.
  bool EnsureRootObject();

  // The codes 9, 12 and 3 (timeline.cpp).
  void BackgroundColor();
  void FrameActions();
  void FreeCharacterTag();

  // --- Tags that define (definitions.cpp, bitmap_tags.cpp) ---

  // Executes the tag that was framed last, if it is one of these.
  void DoDefinition();
  void DefineShape();
  void DefineMorphShape();
  void DefineButton();
  // `kind` is not 0: the colour transforms of an existing button's records.
  // Kind 0 is reserved and ignored.
  void DefineButtonExtra(int32_t kind);
  void DefineSprite();
  void DefineFont();
  void DefineFont2();
  void DefineFontInfo();
  void DefineText();
  void DefineEditText();
  void DefineBits();
  void DefineJPEGTables();

  // The bytes from `start` to `end`, cut to the data, where they lie, with a
  // reference on their block. They are not copied: a tag of a sprite is run by
  // every instance of it, and copies would multiply the movie's bytes.
  DataSpan AttachData(int32_t start, int32_t end) const;

  // --- Sprites by script (sprite_ops.cpp); this is the parent timeline ---

  // Places a copy of the sprite that `source` runs, at `depth`, where anything
  // that stood there goes. `name` may be null.
  void CloneSprite(ScriptThread* source, const char* name, int32_t depth);
  // Takes the sprite that `target` runs off the stage, which deletes `target`;
  // with `keepPlace` an empty sprite takes over its place and name.
  void RemoveSprite(ScriptThread* target, bool keepPlace);

  // --- Variables (variables.cpp) ---

  // By name, without regard to the case of ASCII letters; null for none.
  ScriptVariable* FindVariable(const char* name);
  ScriptVariable* FindVariable(TextView name);
  // Sets or creates; a null or empty name is ignored. Copies both texts; a
  // null or overlong value leaves the variable without one. `updateFocus` as
  // for StoreVariable.
  void SetVariable(const char* name, const char* value, bool updateFocus = true);
  void SetVariable(TextView name, ScriptValue value, bool updateFocus = true);
  // Finds or creates, without a value; null for an empty name, and when memory
  // or a budget is out.
  ScriptVariable* MakeVariable(TextView name);
  // The new value of `variable`, one of this timeline's. Every write ends here:
  // the text fields that are bound to it show it at once, the one with the
  // focus only if `updateFocus`; without, the value is what that one shows.
  void StoreVariable(ScriptVariable* variable, ScriptValue value, bool updateFocus = true);
  void ClearVariables();
  // Changes whenever variables are freed, of any timeline: while it stands, a
  // pointer that FindVariable gave is good, and a name means the same variable.
  static uint64_t VariableEpoch() { return s_variableEpoch; }

  // True for the root timeline of a movie.
  bool IsRoot() const;

  ScriptPlayer* player = nullptr;     // the movie whose dictionary it uses; itself for a root
  ScriptThread* next = nullptr;       // in the stage's list
  ScriptThread** listLink = nullptr;  // what points at it there; null while unlisted
  int32_t startPos = 0;               // offset of the first tag
  int32_t len = 0;                    // bytes of `script` that have arrived
  bool atEnd = false;                 // the closing tag was executed
  int32_t curFrame = -1;              // last frame completed, -1 before the first
  bool seeking = false;               // action tags are dropped
  bool playing = true;
  bool loop = true;
  int32_t numFrames = 0;    // as the header or the definition says
  int32_t scriptErr = 0;    // a negative ScriptResult, or 0
  uint16_t layerDepth = 0;  // a movie's layer number; a sprite's depth
  // The last label passed, inside the script; null after a rewind. For tools
  // that show where a timeline stands.
  const char* currentLabel = nullptr;
  DisplayList* display = nullptr;  // not owned; null without a stage
  SObject* rootObject = nullptr;   // the parent of all that it places; not owned
  bool dataInPlace = false;  // the host may rewrite bytes of the script that have not been reached
  ScriptVariable* firstVariable = nullptr;  // owned, in order of creation
  ScriptVariable* lastVariable = nullptr;

  DataRef scriptBlock;  // keeps `script` alive
  WeakHead<ScriptThread> weakSlots;

 private:
  int32_t RunTo(int32_t frame, bool seek);
  int32_t SeekForward(int32_t frame);
  void ReadCharacter(uint16_t id, PlaceInfo* info);
  void ReadPlaceObject(PlaceInfo* info);
  SCharacter* BeginDefinition(uint8_t type);
  void IndexVariable(ScriptVariable* variable);

  int32_t variableCount = 0;
  // Variables by the hash of their name once there are more than a few: open
  // addressing, a power of two of places, null while free. Owned.
  ScriptVariable** variableIndex = nullptr;
  int32_t indexSize = 0;
  static inline uint64_t s_variableEpoch = 0;
};

// CloneSprite on the parent of the sprite that `thread` runs; nothing for null
// and for a root timeline.
void CloneSprite(ScriptThread* thread, const char* name, int32_t depth);
// RemoveSprite in the same way.
void RemoveSprite(ScriptThread* thread, bool keepPlace);

}  // namespace vexel
