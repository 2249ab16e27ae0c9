// The dictionary of a movie's characters: 128 buckets with chains, as the ids
// of a movie are dense. Characters come from one pool; one that is freed while
// objects or colours still use it leaves the dictionary at once and its memory
// when the last of them lets go.
#include <new>

#include "movie/script_player.h"
#include "player/text.h"
#include "stage/display_list.h"

namespace vexel {

namespace {

constexpr int kCharactersPerBlock = 32;
constexpr uint32_t kCharacterPattern = 0x66666666;

// The stage before a movie says otherwise: 72 by 72 pixels.
constexpr SRECT kInitialFrame = {0, 1440, 0, 1440};

void MakeEmpty(SCharacter* character) {
  RectSetEmpty(&character->bounds);
  RectSetEmpty(&character->bounds2);
}

// Steps along a chain that count as much as a tag, against the stage's allowance:
// a hostile movie could make every tag walk a bucket of 512.
constexpr int32_t kStepsPerTag = 64;

}  // namespace

ScriptPlayer::ScriptPlayer()
    : frame(kInitialFrame),
      charAlloc(sizeof(SCharacter), kCharactersPerBlock, true, kCharacterPattern) {
  static_assert(alignof(SCharacter) <= 8, "the pool aligns to 8");
  player = this;
  lostCharacter = NewCharacter(0, charLost, CharacterOwner::kPool);
  ClearScript();
}

ScriptPlayer::~ScriptPlayer() {
  ClearScript();
  while (inUse) DeleteCharacter(inUse);
  if (lostCharacter) DeleteCharacter(lostCharacter);
  FreeStr(url);
  FreeStr(loaderTarget);
}

SCharacter* ScriptPlayer::LookUp(uint16_t id) {
  SCharacter* character = charIndex[id % kCharacterBuckets];
  int32_t steps = 0;
  for (; character && character->id != id; ++steps) character = character->next;
  if (display && display->tagsLeft > 0) display->tagsLeft -= steps / kStepsPerTag;
  return character;
}

SCharacter* ScriptPlayer::FindCharacter(uint16_t id) {
  SCharacter* character = LookUp(id);
  if (!character && lostCallback && id != kNoCharacterId) {
    lostFlag = true;
    lostCallback(lostArg, id);
  }
  return character;
}

SCharacter* ScriptPlayer::NewCharacter(uint16_t id, uint8_t type, CharacterOwner owner) {
  void* memory = charAlloc.Alloc();
  if (!memory) return nullptr;
  auto* character = new (memory) SCharacter;
  MakeEmpty(character);
  character->player = this;
  character->id = id;
  character->type = type;
  character->owner = owner;
  if (owner == CharacterOwner::kPool) character->uses = 1;
  return character;
}

SCharacter* ScriptPlayer::CreateCharacter(uint16_t id) {
  if (LookUp(id)) return nullptr;
  SCharacter* character = NewCharacter(id, charShape, CharacterOwner::kDictionary);
  if (!character) return nullptr;
  SCharacter** bucket = &charIndex[id % kCharacterBuckets];
  character->next = *bucket;
  *bucket = character;
  character->listed = true;
  return character;
}

SCharacter* ScriptPlayer::CreatePoolCharacter(uint16_t id, uint8_t type) {
  return NewCharacter(id, type, CharacterOwner::kPool);
}

void ScriptPlayer::FreeCharacter(uint16_t id) {
  SCharacter** link = &charIndex[id % kCharacterBuckets];
  while (SCharacter* character = *link) {
    if (character->id != id) {
      link = &character->next;
      continue;
    }
    *link = character->next;
    DropCharacter(character);
  }
}

// The caller has taken it out of its bucket.
void ScriptPlayer::DropCharacter(SCharacter* character) {
  character->listed = false;
  if (character->uses <= 0 && character->bits.useCount <= 0) {
    DeleteCharacter(character);
    return;
  }
  character->next = inUse;
  if (inUse) inUse->link = &character->next;
  character->link = &inUse;
  inUse = character;
  if (++inUseCount >= reapAt) {
    ReapBitmaps();
    reapAt = inUseCount < kReapFirst ? kReapFirst : 2 * inUseCount;
  }
}

void ScriptPlayer::DeleteCharacter(SCharacter* character) {
  if (character->link) {
    *character->link = character->next;
    if (character->next) character->next->link = character->link;
    --inUseCount;
  }
  FreeBits(character);
  character->~SCharacter();
  charAlloc.Free(character);
}

void ScriptPlayer::ReapBitmaps() {
  for (SCharacter* character = inUse; character;) {
    SCharacter* after = character->next;
    if (character->uses <= 0 && character->bits.useCount <= 0) DeleteCharacter(character);
    character = after;
  }
}

void SCharacter::Release() {
  if (--uses > 0 || listed) return;
  if (owner == CharacterOwner::kHeap) {
    delete this;
  } else if (bits.useCount <= 0) {
    player->DeleteCharacter(this);
  }
}

SCharacter* CreateHeapCharacter(ScriptPlayer* player, uint16_t id, uint8_t type) {
  auto* character = new (std::nothrow) SCharacter;
  if (!character) return nullptr;
  MakeEmpty(character);
  character->player = player;
  character->id = id;
  character->type = type;
  character->owner = CharacterOwner::kHeap;
  character->uses = 1;
  return character;
}

SCharacter* CopyToHeap(const SCharacter* source) {
  SCharacter* copy = CreateHeapCharacter(source->player, source->id, source->type);
  if (!copy) return nullptr;
  copy->tagCode = source->tagCode;
  copy->data = source->data;
  copy->bounds = source->bounds;
  copy->frameCount = source->frameCount;
  return copy;
}

void ScriptPlayer::FreeCache() {
  for (SCharacter* bucket : charIndex) {
    for (SCharacter* character = bucket; character; character = character->next) {
      if (character->bits.useCount == 0) FreeBits(character);
    }
  }
  ReapBitmaps();
  charAlloc.FreeEmpties();
}

void ScriptPlayer::FreeAll() {
  if (display && rootObject && rootObject->parent == &display->root) {
    display->RemoveObject(&display->root, layerDepth);
    rootObject = nullptr;
  }
  for (SCharacter*& bucket : charIndex) {
    while (SCharacter* character = bucket) {
      bucket = character->next;
      DropCharacter(character);
    }
  }
  ReapBitmaps();
  curFrame = -1;
  currentLabel = nullptr;
  atEnd = false;
  pos = startPos;
  FreeJPEGInfo();
}

void ScriptPlayer::ClearScript() {
  FreeAll();
  ClearState();
  ClearVariables();
  gotHeader = false;
  headerBytes = 0;
  scanPos = 0;
  streamData = nullptr;
  scriptLen = -1;
  numFramesComplete = -1;
}

}  // namespace vexel
