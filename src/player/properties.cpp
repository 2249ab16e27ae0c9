// The numbered properties that scripts read and write: the place, the looks and
// the position of one timeline's object, and a few numbers of the player.
// A written place belongs to the script from then on: the tags of the timeline
// no longer move the object.
#include "player/properties.h"

#include "geometry/matrix.h"
#include "geometry/point.h"
#include "geometry/trig.h"
#include "movie/character.h"
#include "player/convert.h"
#include "player/splayer.h"
#include "player/text.h"
#include "stage/object.h"
#include "text/clipboard.h"

namespace vexel {

namespace {

constexpr double kTwentieths = 20;  // to a pixel

// Scripts count alpha from 0 to 100, a colour transform from 0 to 256.
constexpr double kAlphaOne = 256;
constexpr double kAlphaPercent = 2.56;

// What a round trip through texts and angles may add to a matrix entry. A
// change that is no larger is none, so that a movie which writes back what it
// read stands still.
constexpr int32_t kMatrixNoise = 16;

// Above this the quality is the best, not just high.
constexpr double kBestQualityAbove = 1.5;

constexpr int kFracBits = 16;

double Percent(SFIXED length) {
  return length * 100.0 / kFixedOne;
}

SFIXED AxisLength(SFIXED x, SFIXED y) {
  const SPOINT axis = {x, y};
  return PointLength(&axis);
}
SFIXED LengthX(const MATRIX& m) {
  return AxisLength(m.a, m.b);
}
SFIXED LengthY(const MATRIX& m) {
  return AxisLength(m.c, m.d);
}

SFIXED AngleX(const MATRIX& m) {
  return _FPATan2(m.b, m.a, kFracBits, kFracBits);
}
// How far the y axis is turned: the same as the x axis unless there is skew.
SFIXED AngleY(const MATRIX& m) {
  return _FPATan2(WrapNeg(m.c), m.d, kFracBits, kFracBits);
}

SFIXED Cos(SFIXED angle) {
  return _FPCos(angle, kFracBits, kFracBits);
}
SFIXED Sin(SFIXED angle) {
  return _FPSin(angle, kFracBits, kFracBits);
}

void SetAxisX(MATRIX* m, SFIXED angle, SFIXED length) {
  m->a = FixedMul(Cos(angle), length);
  m->b = FixedMul(Sin(angle), length);
}
// The sine is negated before it is multiplied: a product rounds half a unit
// upward, so the order shows.
void SetAxisY(MATRIX* m, SFIXED angle, SFIXED length) {
  m->c = FixedMul(WrapNeg(Sin(angle)), length);
  m->d = FixedMul(Cos(angle), length);
}

double BoxSide(const SObject* object, bool height) {
  SRECT box;
  GetBoundingBox(object, &box);
  return (height ? WrapSub(box.ymax, box.ymin) : WrapSub(box.xmax, box.xmin)) / kTwentieths;
}

int32_t FramesLoaded(const ScriptThread* thread) {
  if (!thread->IsRoot()) return thread->numFrames;
  const int32_t complete = thread->player->numFramesComplete;
  return complete < thread->numFrames ? complete : thread->numFrames;
}

void Move(SObject* object, SCOORD* coordinate, double pixels) {
  const SCOORD moved = ToInt32(pixels * kTwentieths);
  if (moved != *coordinate) {
    *coordinate = moved;
    object->Modify();
  }
  object->scriptControlled = true;
}

void SetScale(SObject* object, double percent, bool vertical) {
  MATRIX* m = &object->mat;
  const SFIXED length = ToInt32(percent / 100.0 * kFixedOne);
  const SFIXED present = vertical ? LengthY(*m) : LengthX(*m);
  const int64_t change = int64_t{length} - present;
  if (change > kMatrixNoise || change < -kMatrixNoise) {
    if (vertical) {
      SetAxisY(m, AngleY(*m), length);
    } else {
      SetAxisX(m, AngleX(*m), length);
    }
    object->Modify();
  }
  object->scriptControlled = true;
}

// Turns both axes by as much, so that skew stays.
void SetRotation(SObject* object, double degrees) {
  const SFIXED angle = ToInt32(degrees * kFixedOne);
  MATRIX turned = object->mat;
  const SFIXED skew = WrapSub(AngleY(turned), AngleX(turned));
  SetAxisX(&turned, angle, LengthX(turned));
  SetAxisY(&turned, WrapAdd(angle, skew), LengthY(object->mat));
  if (!MatrixEqual(&turned, &object->mat, kMatrixNoise)) {
    object->mat = turned;
    object->Modify();
  }
  object->scriptControlled = true;
}

bool IsWithin(const SObject* object, const SObject* top) {
  while (object && object != top) object = object->parent;
  return object != nullptr;
}

// What is hidden loses the keyboard's focus, frame included. A field keeps what
// is selected in it.
void TakeFocus(SPlayer* player, const SObject* hidden) {
  if (IsWithin(player->focus.Get(), hidden)) {
    player->focus.Set(nullptr);
    PlayerOwnSelection(player, false);
  }
  if (!IsWithin(player->focusButton.button.Get(), hidden)) return;
  player->focusButton.button.Set(nullptr);
  DisplayList& display = player->display;
  display.InvalidateRect(&display.tabFocusRect);
  RectSetEmpty(&display.tabFocusRect);
}

// Required: unlike the other writes, this one leaves the object to its timeline.
void SetVisible(SPlayer* player, SObject* object, bool visible) {
  if (visible == object->visible) return;
  object->visible = visible;
  if (!visible) TakeFocus(player, object);
  object->Modify();
}

void SetAlpha(SObject* object, double percent) {
  const int32_t alpha = ToInt32(percent * kAlphaPercent);
  if (alpha != object->cxform.aa) {
    object->cxform.aa = static_cast<int16_t>(alpha);
    object->cxform.CalcFlags();
    object->Modify();
  }
  object->scriptControlled = true;
}

const char* MovieUrl(const SObject* object) {
  const SCharacter* character = object ? object->character : nullptr;
  return character && character->player ? character->player->url : nullptr;
}

char* CopyOrEmpty(const char* text) {
  return CreateStr(text ? text : "");
}

void SetName(SObject* object, const char* name) {
  char* copy = CreateStr(name);  // of what may be the old name
  FreeStr(object->name);
  object->name = copy;
}

}  // namespace

double SPlayer::GetProperty(ScriptThread* thread, int32_t index) {
  if (!thread) return 0;
  switch (index) {
    case kPropCurrentFrame:
      return thread->curFrame + 1.0;
    case kPropTotalFrames:
      return thread->numFrames;
    case kPropFramesLoaded:
      return FramesLoaded(thread);
    case kPropQuality:
      return !highQuality ? 0 : bestQuality ? 2 : 1;
    case kPropFocusRect:
      return display.useFocusRect;
    case kPropBufferTime:
      return bufferTime;
    default:
      break;
  }
  const SObject* object = thread->rootObject;
  if (!object) return 0;
  switch (index) {
    case kPropX:
      return object->mat.tx / kTwentieths;
    case kPropY:
      return object->mat.ty / kTwentieths;
    case kPropXScale:
      return Percent(LengthX(object->mat));
    case kPropYScale:
      return Percent(LengthY(object->mat));
    case kPropAlpha:
      return object->cxform.aa * 100.0 / kAlphaOne;
    case kPropVisible:
      return object->visible;
    case kPropWidth:
      return BoxSide(object, false);
    case kPropHeight:
      return BoxSide(object, true);
    case kPropRotation:
      return static_cast<double>(AngleX(object->mat)) / kFixedOne;
    default:
      return 0;
  }
}

void SPlayer::SetProperty(ScriptThread* thread, int32_t index, double value) {
  if (!thread) return;
  switch (index) {
    case kPropQuality:
      highQuality = value != 0;
      bestQuality = value > kBestQualityAbove;
      autoQuality = false;
      SetCamera(kCameraShowSoon);
      return;
    case kPropFocusRect:
      display.useFocusRect = value != 0;
      if (!RectIsEmpty(&display.tabFocusRect)) display.InvalidateRect(&display.tabFocusRect);
      return;
    case kPropBufferTime:
      bufferTime = ToInt32(value);
      return;
    default:
      break;
  }
  SObject* object = thread->rootObject;
  if (!object) return;
  switch (index) {
    case kPropX:
      Move(object, &object->mat.tx, value);
      break;
    case kPropY:
      Move(object, &object->mat.ty, value);
      break;
    case kPropXScale:
      SetScale(object, value, false);
      break;
    case kPropYScale:
      SetScale(object, value, true);
      break;
    case kPropAlpha:
      SetAlpha(object, value);
      break;
    case kPropVisible:
      SetVisible(this, object, value != 0);
      break;
    case kPropRotation:
      SetRotation(object, value);
      break;
    default:
      break;
  }
}

char* SPlayer::GetPropertyStr(ScriptThread* thread, int32_t index) {
  if (!thread) return nullptr;
  SObject* object = thread->rootObject;
  switch (index) {
    case kPropTarget:
      return GetTargetPath(object);
    case kPropName:
      return CopyOrEmpty(object ? object->name : nullptr);
    case kPropDropTarget:
      return CopyOrEmpty(object ? object->dropTarget : nullptr);
    case kPropUrl:
      return CopyOrEmpty(MovieUrl(object));
    default:
      return ConvertDoubleToString(GetProperty(thread, index));
  }
}

void SPlayer::SetPropertyStr(ScriptThread* thread, int32_t index, const char* value) {
  if (!thread) return;
  switch (index) {
    case kPropTarget:
    case kPropDropTarget:
    case kPropUrl:
      return;
    case kPropName:
      if (thread->rootObject) SetName(thread->rootObject, value);
      return;
    default:
      break;
  }
  double number;
  if (ConvertStringToDouble(value, &number)) SetProperty(thread, index, number);
}

}  // namespace vexel
