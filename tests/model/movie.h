// A loaded movie: its bytes, its dictionary of characters and its timelines.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "parser.h"
#include "raster.h"

namespace vexel::model {

struct Movie;
struct Stage;
struct Object;

enum CharacterType {
  kShape = 0,
  kBits = 1,
  kButton = 2,
  kFont = 3,
  kText = 4,
  kSprite = 6,
  kMorph = 7,
  kEditText = 9,
  kRootObject = 98,
  kLost = 99
};

struct Character {
  Movie* movie = nullptr;
  int id = 0, type = kShape, tagCode = 0;
  Bytes data;
  Rect bounds, bounds2;
  std::shared_ptr<Bitmap> bits;  // bitmaps
  int fontFlags = 0, glyphCount = 0;
  std::string fontName;
  int frameCount = 0;
  bool trackAsMenu = false;  // buttons
};
using CharacterRef = std::shared_ptr<Character>;

// One running timeline.
struct Thread : Parser {
  Movie* movie = nullptr;
  Stage* stage = nullptr;
  Object* root = nullptr;
  bool isMain = false;
  i64 startPos = 0, len = 0;
  bool atEnd = false, playing = true, loop = true;
  int curFrame = -1, numFrames = 0, scriptErr = 0;
  u16 layerDepth = 0;
  std::vector<std::pair<std::string, std::string>> variables;

  const std::string* FindVariable(const std::string& name) const;
  // Shows the value in the fields of that name; in the focused one if forced.
  void SetVariable(const std::string& name, const std::string& value, bool force);
  int DoTag();
  int DoTags(int frame);
  int DrawFrame(int frame, bool seek);
  void DoFrame(int delta);

 private:
  void Tag(int code);
  CharacterRef Define(int type);
  void PlaceObject();
  void PlaceObject2();
  void RemoveObject(bool withId);
  CharacterRef Placeable(int id);
};

// The timeline and the name that a reference of one means; null for a bad path.
Thread* ResolveVariable(Thread* from, const std::string& text, std::string& name);

struct Movie {
  Thread main;
  Stage* stage = nullptr;
  Rect frame{0, 1440, 0, 1440};
  i32 frameRate = 0, frameDelay = 0;
  int version = 0;
  bool gotHeader = false, complete = false;
  int numFramesComplete = -1;
  std::map<int, CharacterRef> dictionary;
  CharacterRef lost;
  Bytes jpegTables;  // body of the first tag of shared tables

  Movie();
  // The whole file at once. False for a bad header.
  void Push(const std::vector<u8>& bytes);
  CharacterRef Find(int id) const;
};

// Decodes a bitmap character's pixels if it has none yet.
void BuildBits(Character& c);

}  // namespace vexel::model
