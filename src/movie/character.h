// The characters of a movie's dictionary: what its tags define and its
// timelines place. A definition keeps the identity, the kind and the bounds of
// a character; the rest stays in the file's own form and is parsed each time
// that the character is built, so a definition costs next to nothing.
#pragma once

#include <cstdint>

#include "geometry/rect.h"
#include "movie/data_block.h"
#include "movie/fwd.h"
#include "raster/bitmap_core.h"

namespace vexel {

enum CharacterType : uint8_t {
  charShape = 0,
  charBitmap = 1,
  charButton = 2,
  charFont = 3,
  charText = 4,
  charSprite = 6,
  charMorphShape = 7,
  charEditText = 9,
  charLoadedMovie = 97,  // a sprite that holds a loaded movie
  charRoot = 98,         // a layer's root object
  charLost = 99,         // stands in for a character that is not there
};

// Ids from here on belong to the system: tags neither define, free nor place
// them.
inline constexpr uint16_t kFirstSystemId = 65532;
inline constexpr uint16_t kEmptySpriteId = 65532;  // what RemoveSprite leaves in place
inline constexpr uint16_t kLoadedMovieId = 65533;  // made for one object on the heap
inline constexpr uint16_t kRootId = 65534;
inline constexpr uint16_t kNoCharacterId = 65535;  // its absence is never reported

// Who frees a character once nothing uses it any more. A flag and not the id
// decides, since ids come out of files.
enum class CharacterOwner : uint8_t {
  kDictionary,  // the movie: the character stays until it is taken out of the dictionary
  kPool,        // its last user; the memory goes back to the movie's pool
  kHeap,        // its last user; made by CreateHeapCharacter
};

// The kinds share no memory: a reader that meets the wrong kind sees nothing
// rather than another kind's bytes.
struct SCharacter {
  SCharacter* next = nullptr;      // in its bucket, or among those taken out but still used
  ScriptPlayer* player = nullptr;  // the movie that it belongs to
  uint16_t id = 0;
  uint8_t type = 0;     // CharacterType
  uint8_t tagCode = 0;  // low byte of the code that defined it: tells forms apart
  CharacterOwner owner = CharacterOwner::kDictionary;
  bool listed = false;          // in the dictionary
  SCharacter** link = nullptr;  // what points at it among those taken out but still used
  int32_t uses = 0;             // holders: placed objects, and who made a pool or heap character

  DataSpan data;  // the rest of the tag's body; of a sprite, its tags
  SRECT bounds;   // twentieths; empty when the kind has none

  // Bitmap: decoded when first needed, and dropped again under memory pressure.
  SBitmapCore bits = {};
  bool damaged = false;  // decoding failed for good: it is not tried again

  SRECT bounds2;  // morph shape: the bounds of the end shape

  // Button.
  DataSpan cxformData;       // a colour transform for each record, or null
  bool trackAsMenu = false;  // presses may wander between buttons

  // Font.
  DataSpan fontInfo;  // a length-prefixed name, flags and the code table, or null
  uint16_t glyphCount = 0;
  uint16_t fontFlags = 0;
  int32_t nameSize = 0;  // how far the font name's length byte lies before `data`

  int32_t frameCount = 0;  // sprite

  // A holder comes and goes. The last one to leave frees a character that is
  // not in the dictionary (any more); it must not touch it afterwards.
  void AddRef() { ++uses; }
  void Release();
};

// A character for one object, of an id and type of the system, with one use
// that belongs to the caller; null when memory is out. `player` is not owned.
SCharacter* CreateHeapCharacter(ScriptPlayer* player, uint16_t id, uint8_t type);

// A heap copy of `source` with one use that belongs to the caller, for a clone
// of a loaded movie; null when memory is out.
SCharacter* CopyToHeap(const SCharacter* source);

}  // namespace vexel
