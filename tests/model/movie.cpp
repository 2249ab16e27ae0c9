// The file header, tags, definitions and timelines.
#include "movie.h"

#include "stage.h"

namespace vexel::model {

Movie::Movie() {
  main.movie = this;
  main.isMain = true;
  lost = std::make_shared<Character>();
  lost->movie = this;
  lost->type = kLost;
}

CharacterRef Movie::Find(int id) const {
  const auto it = dictionary.find(id);
  return it == dictionary.end() ? nullptr : it->second;
}

void Movie::Push(const std::vector<u8>& file) {
  if (file.size() < 8) return;
  if (file[0] != 'V' || file[1] != 'X' || file[2] != 'F') {
    main.scriptErr = -1;
    return;
  }
  version = file[3];
  const u32 declared = file[4] | u32{file[5]} << 8 | u32{file[6]} << 16 | u32{file[7]} << 24;
  if (declared < 8 || declared > 0x7FFFFFFF) {
    main.scriptErr = -1;
    return;
  }
  if (declared > 0x1FFFFFFF) {
    main.scriptErr = -2;
    return;
  }
  const size_t held = file.size() < declared ? file.size() : declared;
  complete = held == declared;
  main.script =
      std::make_shared<const std::vector<u8>>(file.begin(), file.begin() + static_cast<i64>(held));
  main.len = static_cast<i64>(held);
  if (held < 19) return;
  main.pos = 8;
  frame = main.GetRect();
  frameRate = static_cast<i32>(main.GetWord() << 8);
  frameDelay = frameRate == 0 ? 1000 : 65536000 / frameRate;
  main.numFrames = static_cast<int>(main.GetWord());
  main.startPos = main.pos;
  gotHeader = true;
  if (complete) {
    numFramesComplete = 16000;
    return;
  }
  Parser scan;
  scan.script = main.script;
  scan.pos = main.startPos;
  for (int code; (code = scan.GetTag(main.len)) >= 0; scan.pos = scan.tagEnd) {
    if (code == 1) ++numFramesComplete;
  }
}

// ---- tags ------------------------------------------------------------------

int Thread::DoTag() {
  if (atEnd) return 2;
  const int code = GetTag(len);
  if (code < 0) return 1;
  const i64 end = tagEnd;
  Tag(code);
  pos = end;
  return scriptErr;
}

void Thread::Tag(int code) {
  switch (code) {
    case 0:
      atEnd = true;
      break;
    case 1:
      ++curFrame;
      break;
    case 2:
    case 22:
    case 32:
      if (auto c = Define(kShape)) {
        c->bounds = GetRect();
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 3: {
      const int id = static_cast<int>(GetWord());
      if (id < 65532) movie->dictionary.erase(id);
      break;
    }
    case 4:
      PlaceObject();
      break;
    case 5:
      RemoveObject(true);
      break;
    case 6:
    case 20:
    case 21:
    case 35:
    case 36:
      if (auto c = Define(kBits)) {
        c->data = Slice(script, tagPos, tagEnd);
        c->bits = std::make_shared<Bitmap>();
      }
      break;
    case 7:
    case 34:
      if (auto c = Define(kButton)) {
        if (code == 34) c->trackAsMenu = GetByte() != 0;
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 8:
      if (!movie->jpegTables) movie->jpegTables = Slice(script, pos, tagEnd);
      break;
    case 9: {
      const Srgb c = GetSrgb(false);
      stage->SetBackgroundColor(c, 1);
      break;
    }
    case 10:
      if (auto c = Define(kFont)) c->data = Slice(script, pos, tagEnd);
      break;
    case 48:
      if (auto c = Define(kFont)) {
        c->fontFlags = static_cast<int>(GetWord());
        for (u32 n = GetByte(); n > 0; --n) c->fontName += static_cast<char>(GetByte());
        c->glyphCount = static_cast<int>(GetWord());
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 11:
    case 33:
      if (auto c = Define(kText)) {
        c->bounds = GetRect();
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 26:
      PlaceObject2();
      break;
    case 28:
      RemoveObject(false);
      break;
    case 37:
      if (auto c = Define(kEditText)) {
        c->bounds = GetRect();
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 39:
      if (auto c = Define(kSprite)) {
        c->frameCount = static_cast<int>(GetWord());
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    case 46:
      if (auto c = Define(kMorph)) {
        c->bounds = GetRect();
        c->bounds2 = GetRect();
        c->data = Slice(script, pos, tagEnd);
      }
      break;
    default:
      break;
  }
}

CharacterRef Thread::Define(int type) {
  const int id = static_cast<int>(GetWord());
  if (id >= 65532 || movie->Find(id)) return nullptr;
  auto c = std::make_shared<Character>();
  c->movie = movie;
  c->id = id;
  c->type = type;
  c->tagCode = type == kBits ? 0 : tagCode & 255;
  movie->dictionary[id] = c;
  return c;
}

CharacterRef Thread::Placeable(int id) {
  if (id >= 65532) return nullptr;
  if (auto c = movie->Find(id)) return c;
  return isMain ? movie->lost : nullptr;
}

void Thread::PlaceObject() {
  PlaceInfo info;
  const int id = static_cast<int>(GetWord());
  info.depth = static_cast<u16>(GetWord());
  info.mat = GetMatrix();
  info.flags = 6;
  if (pos < tagEnd) {
    info.cxform = GetColorTransform(false);
    info.flags |= 8;
  }
  info.character = Placeable(id);
  if (info.character) stage->PlaceObject(root, info);
}

void Thread::PlaceObject2() {
  PlaceInfo info;
  info.flags = static_cast<int>(GetByte()) & 0x7F;
  info.depth = static_cast<u16>(GetWord());
  if (info.flags & 2) {
    info.character = Placeable(static_cast<int>(GetWord()));
    if (!info.character) return;
  }
  if (info.flags & 4) info.mat = GetMatrix();
  if (info.flags & 8) info.cxform = GetColorTransform(true);
  if (info.flags & 0x10) info.ratio = static_cast<u16>(GetWord());
  if (info.flags & 0x40) info.clipDepth = static_cast<u16>(GetWord());
  if (info.flags & 1) {
    stage->MoveObject(root, info);
  } else if (info.character) {
    stage->PlaceObject(root, info);
  }
}

void Thread::RemoveObject(bool withId) {
  if (withId) GetWord();
  stage->RemoveObject(root, static_cast<u16>(GetWord()));
}

// ---- frames ----------------------------------------------------------------

int Thread::DoTags(int frame) {
  if (curFrame >= frame) return 0;
  int r = 0;
  while (curFrame < frame && r == 0) r = DoTag();
  return r;
}

int Thread::DrawFrame(int frame, bool seek) {
  if (scriptErr != 0) return scriptErr;
  if (!movie->gotHeader) return 1;
  if (!root) {
    auto c = movie->Find(65534);
    if (!c) {
      c = std::make_shared<Character>();
      c->movie = movie;
      c->id = 65534;
      c->type = kRootObject;
      movie->dictionary[65534] = c;
    }
    PlaceInfo info;
    info.flags = 2;
    info.character = c;
    info.depth = layerDepth;
    root = stage->PlaceObject(&stage->root, info);
    if (!root) return -2;
    root->thread = this;
  }
  // A timeline placed by another's frame finds the focus saved already.
  if (stage->drawing++ == 0) stage->SaveFocus();
  int result;
  if (!seek) {
    result = DoTags(frame);
  } else if (curFrame <= frame) {
    DoTags(frame - 1);
    result = DoTags(frame);
  } else {
    pos = startPos;
    curFrame = -1;
    atEnd = false;
    stage->BeginHold(root);
    DoTags(frame - 1);
    result = DoTags(frame);
    stage->FinishHold();
  }
  if (--stage->drawing == 0) stage->savedFocus = SavedFocus{};
  return result;
}

void Thread::DoFrame(int delta) {
  if (!playing) return;
  int target = curFrame + delta;
  if (isMain && !movie->complete && target > movie->numFramesComplete)
    target = movie->numFramesComplete;
  const int r = DrawFrame(target, false);
  if (r == 2) {
    if (loop && curFrame != 0) {
      DrawFrame(0, true);
    } else {
      playing = false;
    }
  } else if (r < 0) {
    playing = false;
  }
}

}  // namespace vexel::model
