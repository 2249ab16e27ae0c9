// Target paths, variables and properties.
#include "player.h"

namespace vexel::model::script {

constexpr size_t kMaxSegment = 127;
constexpr size_t kMaxChain = 256;
constexpr i32 kDeadBand = 16;

Layer* Player::FindLayer(i64 number) {
  for (Layer& layer : layers) {
    if (layer.movie.layer == number) return &layer;
  }
  return nullptr;
}

Thread* Player::FindTarget(Object* start, const Text& path) {
  Object* at = start;
  size_t i = 0;
  bool mayBeLayer = true;
  if (!path.empty() && path[0] == '/') {
    while (at->parent && at->parent != &stage.root) at = at->parent;
    i = 1;
    mayBeLayer = false;
  }
  while (i < path.size()) {
    Text segment;
    while (i < path.size() && path[i] != '/' && segment.size() < kMaxSegment) segment += path[i++];
    if (i < path.size() && path[i] == '/') ++i;
    const bool first = mayBeLayer;
    mayBeLayer = false;
    if (first && LayerNumber(segment) >= 0) {
      Layer* layer = FindLayer(LayerNumber(segment));
      if (!layer || !layer->thread.root) return nullptr;
      at = layer->thread.root;
      continue;
    }
    if (segment == "..") {
      if (!at->parent) return nullptr;
      at = at->parent;
      continue;
    }
    Object* child = at->firstChild;
    while (child && !(child->character->type == kSpriteType && child->hasName &&
                      SameName(child->name, segment))) {
      child = child->next;
    }
    if (!child) return nullptr;
    at = child;
  }
  return at->thread;
}

Text Player::TargetPath(const Object* object) const {
  std::vector<const Object*> chain;
  const Object* at = object;
  while (at && chain.size() < kMaxChain && !(at->character && at->character->type == kRootType)) {
    chain.push_back(at);
    at = at->parent;
  }
  Text out;
  const int layer = at && at->movie ? at->movie->layer : 0;
  if (layer != 0) out = "_level" + std::to_string(layer);
  for (size_t i = chain.size(); i-- > 0;) {
    out += '/';
    out += chain[i]->hasName ? chain[i]->name : "?";
  }
  if (out.empty()) out = "/";
  return out;
}

Thread* Player::Resolve(const Text& text, Thread* thread, Text* name) {
  if (!thread) thread = MainThread();
  const size_t colon = text.find(':');
  if (colon == Text::npos) {
    *name = text;
    return thread;
  }
  *name = text.substr(colon + 1);
  return FindTarget(thread->root, text.substr(0, colon));
}

Thread* Player::ResolveFrame(const Text& text, Thread* thread, int* frame) {
  Text name;
  Thread* found = Resolve(text, thread, &name);
  if (!found) return nullptr;
  i32 number = 0;
  i64 index = 0;
  if (ParseInteger(name, &number)) {
    index = i64{number} - 1;
  } else {
    index = found->FindLabel(name);
  }
  if (index < 0) return nullptr;
  *frame = static_cast<int>(index);
  return found;
}

bool Player::GetVariable(Thread* thread, const Text& text, Text* value) {
  Text name;
  Thread* found = Resolve(text, thread, &name);
  // Without fields no dotted name means anything.
  if (!found || name.find('.') != Text::npos) return false;
  const Variable* variable = found->Find(name);
  if (!variable) return false;
  *value = variable->value;
  return true;
}

void Player::SetVariable(Thread* thread, const Text& text, const Text& value) {
  Text name;
  Thread* found = Resolve(text, thread, &name);
  if (!found || name.find('.') != Text::npos) return;
  found->Set(name, value);
}

double Player::ReadProperty(Thread* thread, i32 index) {
  const Object* o = thread->root;
  const Matrix& m = o->mat;
  switch (index) {
    case 0:
      return m.tx / 20.0;
    case 1:
      return m.ty / 20.0;
    case 2:
      return PointLength({m.a, m.b}) * 100.0 / 65536;
    case 3:
      return PointLength({m.c, m.d}) * 100.0 / 65536;
    case 4:
      return thread->curFrame + 1.0;
    case 5:
      return thread->numFrames;
    case 6:
      return o->cxform.aa * 100.0 / 256;
    case 7:
      return o->visible ? 1 : 0;
    case 8: {
      const Rect box = BoundingBox(*o, Matrix{});
      return (box.xmax - box.xmin) / 20.0;
    }
    case 9: {
      const Rect box = BoundingBox(*o, Matrix{});
      return (box.ymax - box.ymin) / 20.0;
    }
    case 10:
      return ATan2(m.b, m.a) / 65536.0;
    case 12:
      if (thread->isMain && thread->movie->numFramesComplete < thread->numFrames) {
        return thread->movie->numFramesComplete;
      }
      return thread->numFrames;
    case 16:
      return !highQuality ? 0 : bestQuality ? 2 : 1;
    case 17:
      return useFocusRect ? 1 : 0;
    case 18:
      return bufferTime;
    default:
      return 0;
  }
}

Text Player::GetProperty(Thread* thread, i32 index) {
  switch (index) {
    case 11:
      return TargetPath(thread->root);
    case 13:
      return thread->root->name;
    case 14:
      return "";  // nothing here is ever hit
    case 15:
      return thread->root->movie->url;
    default:
      return DoubleText(ReadProperty(thread, index));
  }
}

void Player::SetProperty(Thread* thread, i32 index, const Text& text) {
  if (!thread || index == 11 || index == 14 || index == 15) return;
  if (index == 13) {
    thread->root->hasName = true;
    thread->root->name = text;
    return;
  }
  double value = 0;
  if (ParseDouble(text, &value)) WriteProperty(thread, index, value);
}

void Player::WriteScale(Object* o, i32 index, double value) {
  Matrix& m = o->mat;
  const i32 length = ToInt32(value / 100 * 65536);
  const i32 now = index == 2 ? PointLength({m.a, m.b}) : PointLength({m.c, m.d});
  const i64 change = i64{length} - now;
  if (change > kDeadBand || change < -kDeadBand) {
    if (index == 2) {
      const i32 angle = ATan2(m.b, m.a);
      m.a = FixedMul(Cos(angle), length);
      m.b = FixedMul(Sin(angle), length);
    } else {
      const i32 angle = ATan2(-m.c, m.d);
      m.c = FixedMul(-Sin(angle), length);
      m.d = FixedMul(Cos(angle), length);
    }
  }
  o->scriptControlled = true;
}

static bool Near(i32 a, i32 b) {
  return Abs(a - b) <= kDeadBand;
}

void Player::WriteRotation(Object* o, double value) {
  Matrix m = o->mat;
  const i32 x = PointLength({m.a, m.b}), y = PointLength({m.c, m.d});
  const i32 s = ATan2(-m.c, m.d) - ATan2(m.b, m.a);
  const i32 r = ToInt32(value * 65536);
  m.a = FixedMul(Cos(r), x);
  m.b = FixedMul(Sin(r), x);
  m.c = FixedMul(-Sin(r + s), y);
  m.d = FixedMul(Cos(r + s), y);
  const Matrix& now = o->mat;
  if (!(Near(m.a, now.a) && Near(m.b, now.b) && Near(m.c, now.c) && Near(m.d, now.d))) o->mat = m;
  o->scriptControlled = true;
}

void Player::WriteProperty(Thread* thread, i32 index, double value) {
  Object* o = thread->root;
  switch (index) {
    case 0:
      o->mat.tx = ToInt32(value * 20);
      o->scriptControlled = true;
      break;
    case 1:
      o->mat.ty = ToInt32(value * 20);
      o->scriptControlled = true;
      break;
    case 2:
    case 3:
      WriteScale(o, index, value);
      break;
    case 6:
      if (const i32 alpha = ToInt32(value * 2.56); alpha != o->cxform.aa) {
        o->cxform.aa = static_cast<i16>(alpha);
        o->cxform.CalcFlags();
      }
      o->scriptControlled = true;
      break;
    case 7:
      o->visible = value != 0;
      break;
    case 10:
      WriteRotation(o, value);
      break;
    case 16:
      highQuality = value != 0;
      bestQuality = value > 1.5;
      SetCamera();
      break;
    case 17:
      useFocusRect = value != 0;
      break;
    case 18:
      bufferTime = ToInt32(value);
      break;
    default:
      break;
  }
}

}  // namespace vexel::model::script
