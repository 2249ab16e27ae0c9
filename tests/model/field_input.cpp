// A field's keys and mouse.
#include "field.h"
#include "field_record.h"

namespace vexel::model {

void Field::Go(i32 position, bool extend) {
  cursor = position;
  if (!extend) anchor = cursor;
}

void Field::Forward(bool word, bool extend) {
  i32 i = cursor;
  if (word) {
    while (i < Length() && Breaks(i)) ++i;
    while (i < Length() && !Breaks(i)) ++i;
  } else if (i < Length()) {
    ++i;
  }
  Go(i, extend);
  atLineEnd = false;
}

void Field::Backward(bool word, bool extend) {
  i32 i = cursor;
  if (word) {
    while (i > 0 && Breaks(i - 1)) --i;
    while (i > 0 && !Breaks(i - 1)) --i;
  } else if (i > 0) {
    --i;
  }
  Go(i, extend);
  atLineEnd = false;
}

void Field::DeleteSelection() {
  if (anchor == cursor) return;
  const i32 low = anchor < cursor ? anchor : cursor, high = anchor < cursor ? cursor : anchor;
  text.erase(text.begin() + low, text.begin() + high);
  anchor = cursor = low;
  atLineEnd = false;
}

void Field::Delete() {
  if (anchor != cursor) {
    DeleteSelection();
  } else if (anchor < Length()) {
    text.erase(text.begin() + anchor);
  }
}

void Field::Insert(std::vector<u16> what) {
  const FontDesc desc = GetFontDesc();
  std::vector<u16> fit;
  for (u16 c : what) {
    auto known = [&desc](int code) { return desc.font && FindGlyph(code, desc) >= 0; };
    if (c == 13 || c == 10 || known(c)) {
      fit.push_back(c);
    } else if (c >= 'A' && c <= 'Z' && known(c + 32)) {
      fit.push_back(static_cast<u16>(c + 32));
    } else if (c >= 'a' && c <= 'z' && known(c - 32)) {
      fit.push_back(static_cast<u16>(c - 32));
    }
  }
  atLineEnd = false;
  DeleteSelection();
  i32 count = static_cast<i32>(fit.size());
  if (insertMode) {
    if (maxLength && Length() + count > maxLength) {
      count = maxLength - Length();
      if (count < 1) return;
    }
    text.insert(text.begin() + cursor, fit.begin(), fit.begin() + count);
  } else {
    i32 end = cursor + count;
    if (end > Length()) {
      if (maxLength && end > maxLength) {
        count -= end - maxLength;
        end = maxLength;
        if (count < 1) return;
      }
      text.resize(static_cast<size_t>(end));
    }
    for (i32 i = 0; i < count; ++i)
      text[static_cast<size_t>(cursor + i)] = fit[static_cast<size_t>(i)];
  }
  cursor += count;
  anchor += count;
}

void Field::HandleKeyDown(int key, int modifiers) {
  if (!drawn) return;
  const bool extend = (modifiers & 1) != 0, control = (modifiers & 2) != 0;
  const bool writable = !(flags & kReadOnly);
  auto stepBack = [this] {
    if (cursor > 0 && atLineEnd) --cursor;
  };
  switch (key) {
    case 1:
      Backward(control, extend);
      break;
    case 2:
      Forward(control, extend);
      break;
    case 3:
      stepBack();
      Go(control ? 0 : LineStart(LineNumber(cursor)), extend);
      atLineEnd = false;
      break;
    case 4:
      if (atLineEnd) break;
      if (control) {
        Go(Length(), extend);
      } else {
        i32 end = LineEnd(cursor);
        if (Breaks(end)) {
          ++end;
          atLineEnd = true;
        }
        Go(end, extend);
      }
      break;
    case 5:
      insertMode = !insertMode;
      break;
    case 6:
      if (!writable) break;
      if (!control) {
        Delete();
      } else if (!extend) {
        if (anchor == cursor) Forward(true, true);
        Delete();
      }
      atLineEnd = false;
      break;
    case 7:
      if (!writable) break;
      DeleteSelection();
      atLineEnd = false;
      break;
    case 8:
      if (!writable) break;
      if (anchor != cursor) {
        DeleteSelection();
      } else if (anchor > 0) {
        text.erase(text.begin() + anchor - 1);
        --anchor;
        --cursor;
      }
      break;
    case 9:
      if (writable) DeleteSelection();
      break;
    case 10:
      break;
    case 11:
      if (!writable) break;
      DeleteSelection();
      atLineEnd = false;
      break;
    case 12:
      anchor = Length();
      cursor = 0;
      hscroll = 0;
      break;
    case 13:
      if (writable && flags & kMultiLine) Insert({13});
      break;
    case 14: {
      stepBack();
      const i32 line = LineNumber(cursor), column = cursor - LineStart(line);
      const i32 above = line > 0 ? line - 1 : line, to = LineStart(above), end = LineEnd(to);
      Go(to + column < end ? to + column : end, extend);
      atLineEnd = false;
      break;
    }
    case 15: {
      stepBack();
      const i32 line = LineNumber(cursor), column = cursor - LineStart(line);
      const i32 below = LineEnd(cursor) < Length() ? line + 1 : line;
      const i32 to = LineStart(below), end = LineEnd(to);
      Go(to + column < end ? to + column : end, extend);
      atLineEnd = false;
      break;
    }
    case 16:
      Go(0, extend);
      atLineEnd = false;
      break;
    case 17:
      Go(Length(), extend);
      atLineEnd = false;
      break;
    default:
      if (writable) Insert({static_cast<u16>(key < 0 ? key & 255 : key)});
      break;
  }
  scrollToCursor = true;
}

Point Field::Local(Point pixel) const {
  const i32 scale = object->stage->antialias ? 4 : 1;
  return Transform(Invert(devMatrix), {pixel.x * scale, pixel.y * scale});
}

void Field::DoMouse(Point pixel, bool down, u32 now) {
  if (!drawn || flags & kNoSelect) return;
  atLineEnd = false;
  const Rect bounds = RectInset(character->bounds, 40);
  auto ends = [this](i32 i) { return At(i) == 13 || At(i) == 10; };
  if (down && pixel == clickPoint && now - clickTime < 500) {
    anchor = cursor;
    while (cursor < Length() && !Breaks(cursor) && !ends(cursor)) ++cursor;
    while (anchor > 0 && !Breaks(anchor - 1) && !ends(anchor - 1)) --anchor;
    return;
  }
  mouseDown = down;
  clickPoint = pixel;
  clickTime = now;
  const Point p = Local(pixel);
  const i32 visible = VisibleLines();
  if (visible == 0) return;
  i32 row = (p.y - bounds.ymin) / lineHeight;
  if (row > visible - 1) row = visible - 1;
  if (row < 0) row = 0;
  i32 line = row + vscroll;
  if (line > lineCount) line = lineCount;
  const i32 start = LineStart(line), end = LineEnd(start);
  i32 i = start + hscroll;
  if (i > end) i = end;
  i32 x = static_cast<size_t>(line) < lineX.size() ? lineX[static_cast<size_t>(line)] : 0;
  while (At(i) != 0) {
    if (i >= end) {
      if (Breaks(i)) {
        atLineEnd = true;
        ++i;
      }
      break;
    }
    const i32 w = WidthAt(i);
    if (p.x < x + w / 2 || x + w > bounds.xmax) break;
    x += w;
    ++i;
  }
  cursor = i;
  if (selecting) {
    if (!down) selecting = false;
  } else {
    selecting = true;
    anchor = i;
  }
}

void Field::AutoScroll() {
  if (!mouseDown) return;
  const Point p = Local(clickPoint);
  const Rect r = RectInset(character->bounds, 40);
  if (p.y < r.ymin && cursor > 0 && vscroll > 0) --vscroll;
  if (p.y > r.ymax && cursor < Length() && vscroll < lineCount - 1) ++vscroll;
  if (vscroll > MaxVScroll()) vscroll = MaxVScroll();
  if (flags & kWrap || align != 0) return;
  const i32 start = LineStart(LineNumber(cursor));
  const i32 column = cursor - start, end = LineEnd(cursor) - start;
  if (p.x > r.xmax && column < end && hscroll < end) ++hscroll;
  if (p.x < r.xmin && column >= 1 && hscroll >= 1) --hscroll;
}

}  // namespace vexel::model
