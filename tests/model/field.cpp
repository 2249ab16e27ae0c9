// A field's record, its text and its variable, and the fonts.
#include "field.h"

#include "field_record.h"

namespace vexel::model {

bool Field::insertMode = true;

Field::Record Field::Read() const {
  Parser p;
  p.script = character->data;
  Record r;
  r.flags = static_cast<int>(p.GetWord());
  if (r.flags & kFont) {
    r.fontId = static_cast<int>(p.GetWord());
    r.height = static_cast<i32>(p.GetWord());
  }
  if (r.flags & kColor) r.color = p.GetRgbi(true);
  if (r.flags & kMaxLength) r.maxLength = static_cast<i32>(p.GetWord());
  if (r.flags & kLayout) {
    r.align = static_cast<i32>(p.GetByte());
    r.left = static_cast<i32>(p.GetWord());
    r.right = static_cast<i32>(p.GetWord());
    r.indent = static_cast<i32>(p.GetWord());
    r.leading = static_cast<i16>(p.GetWord());
  }
  auto string = [&p] {
    std::string s;
    for (u32 c; (c = p.GetByte()) != 0;) s += static_cast<char>(c);
    return s;
  };
  r.variable = string();
  if (r.flags & kInitial) r.initial = string();
  return r;
}

Field::Field(Object* o) : object(o), character(o->character) {
  const Record r = Read();
  flags = r.flags;
  maxLength = r.maxLength;
  align = r.align;
  variable = r.variable;
  initial = r.initial;
}

void Field::SetBuffer(const std::string& s) {
  text.clear();
  for (char c : s) text.push_back(static_cast<u8>(c));
  if (anchor > Length()) anchor = Length();
  if (cursor > Length()) cursor = Length();
}

std::string Field::GetBuffer() const {
  std::string s;
  for (u16 c : text) {
    if (c > 255) s += static_cast<char>(c >> 8);
    s += static_cast<char>(c & 255);
  }
  return s.substr(0, s.find('\0'));
}

void Field::UpdateFromVariable() {
  Stage& stage = *object->stage;
  std::string name;
  Thread* thread = ResolveVariable(object->thread, variable, name);
  if (thread && !name.empty()) {
    if (const std::string* value = thread->FindVariable(name)) {
      SetBuffer(*value);
    } else if (flags & kInitial) {
      SetBuffer(initial);
      thread->SetVariable(name, initial, false);
    }
  } else if (name.empty() && flags & kInitial) {
    SetBuffer(initial);
  }
  const SavedFocus& saved = stage.savedFocus;
  if (saved.held && saved.name == variable && saved.depth == object->depth) {
    anchor = saved.anchor < Length() ? saved.anchor : Length();
    cursor = saved.cursor < Length() ? saved.cursor : Length();
    selecting = saved.selecting;
    stage.focus = object;
  }
}

// ---- variables -------------------------------------------------------------

static char Fold(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

static bool SameName(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (Fold(a[i]) != Fold(b[i])) return false;
  }
  return true;
}

const std::string* Thread::FindVariable(const std::string& name) const {
  for (const auto& v : variables) {
    if (SameName(v.first, name)) return &v.second;
  }
  return nullptr;
}

void Thread::SetVariable(const std::string& name, const std::string& value, bool force) {
  if (name.empty()) return;
  bool found = false;
  for (auto& v : variables) {
    if (!SameName(v.first, name)) continue;
    v.second = value;
    found = true;
    break;
  }
  if (!found) variables.emplace_back(name, value);
  stage->root.UpdateFields(this, name, value, force);
}

// Paths of slashes and ".." only; sprites have no names here.
Thread* ResolveVariable(Thread* thread, const std::string& text, std::string& name) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos) {
    name = text;
    return thread;
  }
  name = text.substr(colon + 1);
  std::string path = text.substr(0, colon);
  Object* at = thread->root;
  if (!path.empty() && path[0] == '/') {
    while (at->parent && at->parent->parent) at = at->parent;
    path.erase(0, 1);
  }
  while (!path.empty()) {
    const size_t slash = path.find('/');
    const std::string segment = path.substr(0, slash);
    path = slash == std::string::npos ? "" : path.substr(slash + 1);
    if (segment != ".." || !at->parent) return nullptr;
    at = at->parent;
  }
  return at->thread;
}

void Object::UpdateFields(Thread* of, const std::string& name, const std::string& value,
                          bool force) {
  if (field && (force || stage->focus != this)) {
    std::string own;
    if (ResolveVariable(thread, field->variable, own) == of && SameName(own, name)) {
      field->SetBuffer(value);
      Modify();
    }
  }
  for (Object* c = firstChild; c; c = c->next) c->UpdateFields(of, name, value, force);
}

bool Object::ScrollField(Thread* of, const std::string& name, int mode, i32& value) {
  if (field) {
    std::string own;
    if (ResolveVariable(thread, field->variable, own) == of && own == name) {
      if (mode == 0) value = field->vscroll + 1;
      if (mode == 2) value = field->MaxVScroll() + 1;
      if (mode == 1) {
        const i32 most = field->MaxVScroll();
        i32 v = value - 1;
        if (v > most) v = most;
        if (v < 0) v = 0;
        field->vscroll = value = v;
        Modify();
      }
      return true;
    }
  }
  for (Object* c = firstChild; c; c = c->next) {
    if (c->ScrollField(of, name, mode, value)) return true;
  }
  return false;
}

void Stage::SaveFocus() {
  savedFocus = SavedFocus{};
  if (!focus || !focus->field) return;
  const Field& f = *focus->field;
  savedFocus = {true, f.variable, focus->depth, f.anchor, f.cursor, f.selecting};
}

// ---- fonts -----------------------------------------------------------------

namespace {
struct FontMovie {
  Stage stage;
  Movie movie;
};
FontMovie* g_fonts = nullptr;
}  // namespace

void SetBuiltInFonts(const std::vector<u8>& bytes) {
  static FontMovie fonts;
  g_fonts = &fonts;
  fonts.movie.stage = &fonts.stage;
  fonts.movie.main.stage = &fonts.stage;
  fonts.movie.Push(bytes);
  fonts.movie.main.DoTags(0);
}

CharacterRef FindBuiltInFont(int id) {
  CharacterRef c = g_fonts ? g_fonts->movie.Find(id) : nullptr;
  return c && c->type == kFont ? c : nullptr;
}

FontDesc Field::GetFontDesc() const {
  const Record r = Read();
  FontDesc d;
  d.height = r.height;
  d.font = r.fontId == 0 ? FindBuiltInFont(1) : character->movie->Find(r.fontId);
  if (d.font && d.font->type != model::kFont) d.font = nullptr;
  if (!d.font) {
    d.name = "Times New Roman";
    d.height = 360;
    return d;
  }
  if (d.font->tagCode == 48) {
    d.name = d.font->fontName;
    d.bold = (d.font->fontFlags & 1) != 0;
    d.italic = (d.font->fontFlags & 2) != 0;
  }
  if (!(flags & kOutlines)) {
    int id = d.name == "_sans" ? 9 : d.name == "_typewriter" ? 17 : 1;
    if (d.bold) id += 2;
    if (d.italic) id += 2;
    d.font = FindBuiltInFont(id);
  }
  if (!d.font || d.font->tagCode != 48) {
    d.font = nullptr;
    return d;
  }
  const bool wide = (d.font->fontFlags & 8) != 0;
  Parser p;
  p.script = d.font->data;
  p.pos = i64{d.font->glyphCount} * (wide ? 4 : 2);
  d.codes = wide ? p.GetDWord() : p.GetWord();
  d.layout = d.codes + i64{d.font->glyphCount} * (d.font->fontFlags & 4 ? 2 : 1);
  return d;
}

int FindGlyph(int code, const FontDesc& desc) {
  int low = 0, high = desc.font->glyphCount - 1;
  while (low <= high) {
    const int middle = (low + high) / 2;
    Parser p;
    p.script = desc.font->data;
    const bool wide = (desc.font->fontFlags & 4) != 0;
    p.pos = desc.codes + middle * (wide ? 2 : 1);
    const int entry = static_cast<int>(wide ? p.GetWord() : p.GetByte());
    if (entry == code) return middle;
    if (entry < code) {
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return -1;
}

}  // namespace vexel::model
