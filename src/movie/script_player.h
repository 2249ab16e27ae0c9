// A loaded movie: its bytes as they arrive, its root timeline, and the
// dictionary of its characters. A layer is one of these, as is a movie loaded
// into a sprite; the player itself is the one of layer 0.
#pragma once

#include <cstdint>

#include "geometry/chunk_alloc.h"
#include "geometry/rect.h"
#include "movie/script_thread.h"

namespace vexel {

inline constexpr uint8_t kMovieSignature[3] = {'V', 'X', 'F'};
inline constexpr int32_t kMovieHeaderBytes = 8;
inline constexpr int32_t kCharacterBuckets = 128;

// How many characters that were freed while in use may gather before they are
// looked through for the first time.
inline constexpr int32_t kReapFirst = 64;

// `numFramesComplete` of a movie that is wholly in.
inline constexpr int32_t kAllFramesComplete = 16000;

// Told of every look-up that failed, so that a host can ask for the character.
using LostCallback = void (*)(void* arg, uint16_t id);

struct SColorTable;

class ScriptPlayer : public ScriptThread {
 public:
  ScriptPlayer();
  ~ScriptPlayer();

  // --- Intake (intake.cpp) ---

  // Takes the next bytes of the movie, in pieces of any size; of the loaded
  // text with `variableLoader`. Bytes behind the declared length are dropped,
  // and all bytes once `scriptErr` is set.
  void PushDataBuf(const uint8_t* data, int32_t n);
  // Called by the feeder after each PushDataBuf: shows the first frame of layer
  // 0 as soon as it has arrived, and starts the player.
  void PushDataComplete();
  // Called by the feeder at the end of a loaded text: sets its variables, and
  // deletes this movie. Nothing unless it is a `variableLoader`.
  void SetDataComplete();
  // True once all declared bytes are in.
  bool IsComplete() const { return scriptLen >= 0 && len >= scriptLen; }

  // --- Scattered data (scattered.cpp): a movie that comes as single messages,
  // and has no continuous script. Each message is copied, and lives as long as
  // characters or queued actions read it; between messages `script` is null, so
  // seeks, labels and calls of frames find nothing. ---

  // The head of a movie file: version, rectangle, rate and frame count. Bytes
  // that do not begin with the signature change nothing. The caller sets
  // `gotHeader`.
  void SetHeader(const uint8_t* data, int32_t size);
  // The definitions of a message; its other tags are passed over. All three
  // return a ScriptResult: kScriptNoMemory where there is none for the copy.
  int32_t SetObject(const uint8_t* data, int32_t size);
  // The placements of one frame, at once; its definitions are passed over.
  // `curFrame` stays as it is. With `suppressActions` its actions are dropped.
  int32_t SetFrame(const uint8_t* data, int32_t size, bool suppressActions);
  // A character that was missing has arrived: what stands in for a missing one
  // on this timeline is placed anew, 20 objects at most.
  void RecoverLost();

  // Whether these bytes of the file may be replaced: they lie in the script,
  // the host may write there, and the reader does not stand among them.
  bool IsScriptRangeWriteable(uint32_t position, uint32_t length) const;
  // Replaces them. Looks at all of that but for the reader's place.
  void WriteScriptRange(const uint8_t* data, uint32_t length, uint32_t position);

  // --- The dictionary (dictionary.cpp) ---

  // Null if there is none, which sets `lostFlag` and is reported to
  // `lostCallback`, unless `id` is 65535.
  SCharacter* FindCharacter(uint16_t id);
  // A new character without a kind; null if the id is taken or memory is out.
  SCharacter* CreateCharacter(uint16_t id);
  // A character outside the dictionary, from the same pool, with one use that
  // belongs to the caller; null when memory is out.
  SCharacter* CreatePoolCharacter(uint16_t id, uint8_t type);
  // Takes all of that id out of the dictionary; each is freed when its last
  // user lets go.
  void FreeCharacter(uint16_t id);
  // Drops decoded bitmaps that no colour uses; they are decoded again when
  // next needed.
  void FreeCache();
  // Takes the root object off the stage, empties the dictionary and rewinds.
  void FreeAll();
  // Forgets the movie, its variables included; ready to take another.
  void ClearScript();

  // Decodes a bitmap character's pixels, unless it has them. A failure leaves
  // it without pixels, or with those that its data reached.
  void BuildBits(SCharacter* character);
  // Gives a bitmap character zeroed pixels, within the budgets. False without
  // memory, and for a size or format that there is none of.
  bool CreateBits(SCharacter* character, int32_t format, int32_t width, int32_t height,
                  const SColorTable* table);
  void FreeBits(SCharacter* character);

  char* url = nullptr;  // owned: where the movie came from

  // The declared length of the movie with its header, -1 before the header is
  // in; of a loaded text, how many bytes the buffer holds.
  int32_t scriptLen = -1;
  int32_t headerBytes = 0;  // of the 8, how many have arrived
  uint8_t headerBuf[kMovieHeaderBytes] = {};
  bool gotHeader = false;          // rectangle, rate and frame count are read
  int32_t numFramesComplete = -1;  // index of the last frame wholly in; kAllFramesComplete
  int32_t scanPos = 0;             // offset of the first tag that was not counted yet
  SRECT frame;                     // the stage, in twentieths
  int32_t frameRate = 0;           // frames per second, 16.16
  int32_t frameDelay = 0;          // milliseconds per frame
  int32_t version = 0;             // of the file

  JPEGPlayState* jpegInfo = nullptr;  // owned: the shared JPEG tables
  SPlayer* splayer = nullptr;         // the player that it is a layer of; null while alone
  void* streamData = nullptr;         // the host's handle of the stream that feeds it
  ScriptPlayer* nextLayer = nullptr;

  bool variableLoader = false;  // takes a form-encoded text instead of a movie
  int32_t loaderLayer = -1;
  char* loaderTarget = nullptr;  // owned

  SCharacter* charIndex[kCharacterBuckets] = {};  // bucket: id modulo 128
  ChunkAlloc charAlloc;
  bool lostFlag = false;      // a look-up has failed
  SCharacter* lostCharacter;  // stands in for what is missing; null without memory
  LostCallback lostCallback = nullptr;
  void* lostArg = nullptr;

 private:
  friend struct SCharacter;
  SCharacter* LookUp(uint16_t id);
  SCharacter* NewCharacter(uint16_t id, uint8_t type, CharacterOwner owner);
  void DropCharacter(SCharacter* character);
  void DeleteCharacter(SCharacter* character);
  void ReapBitmaps();
  int64_t* BitmapBytes();
  void FreeJPEGInfo();
  void TakeText(const uint8_t* data, int32_t n);
  bool TakeHeader(const uint8_t** data, int32_t* n);
  bool ReadStageHeader();
  // The rectangle, the rate and the frame count at `pos`.
  void ReadStage();
  void CountFrames();
  void BuildJPEG(SCharacter* character, SParser* parser, int32_t code);
  void BuildAlpha(SCharacter* character, SParser* parser);
  void BuildLossless(SCharacter* character, SParser* parser, bool alpha);
  bool AttachMessage(const uint8_t* data, int32_t size);
  void DetachMessage();
  bool NextMessageTag();
  bool DoFrameTags(bool suppressActions, bool* inSync);
  void RemoveUnconfirmed();
  void RestoreButtons();

  // Taken out of the dictionary, still used. A bitmap that only colours use
  // isn't told when they let go, so those are looked through now and then.
  SCharacter* inUse = nullptr;
  int32_t inUseCount = 0;
  int32_t reapAt = kReapFirst;  // look through at so many
  int64_t bitmapBytes = 0;      // decoded pixels of all layers; counted in the player's
};

}  // namespace vexel
