// Text fields: laying out a long text, typing into it, painting a screen of
// glyphs, and the start of the first field, which unpacks the built-in fonts.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "author/writer.h"
#include "movie/character.h"
#include "support/test_player.h"
#include "text/edit_text.h"

namespace vexel {
namespace {

constexpr int32_t kLongText = 64 * 1024;
constexpr int kWidth = 1280;
constexpr int kHeight = 720;

// English words over and over, without line ends.
std::string Words(size_t length) {
  std::string text;
  while (text.size() < length)
    text += "the quick brown fox jumps over a lazy dog and runs 20 miles - or more, I heard; ";
  text.resize(length);
  return text;
}

// A screen with one field in the built-in serif.
class Scene {
 public:
  Scene(uint16_t flags, uint16_t height, const std::string& words) : m_player(kWidth, kHeight) {
    author::EditTextField field;
    field.flags = flags | author::kEditMultiline | author::kEditWordWrap;
    field.font = 0;
    field.height = height;
    author::MovieWriter movie(kWidth, kHeight);
    movie.DefineEditText(1, author::Rect::Pixels(0, 0, kWidth, kHeight), field);
    movie.Place(1, 1).FrameEnd().End();
    m_player.Push(movie.Finish());
    m_object = m_player.rootObject->firstChild;
    m_text = m_object->editText;
    m_text->SetBuffer(words.c_str());
    m_player.focus.Set(m_object);
    Paint();
  }

  void LayOut() {
    m_object->FreeCache();
    STransform t = m_player.display.camera;
    m_text->Draw(&t, true);
  }
  // What a change of the text costs until it is seen.
  void Paint() {
    m_object->Modify();
    m_player.display.Update();
  }
  // The whole field from the edges that it has.
  void Repaint() {
    m_player.display.InvalidateRect(&m_player.display.devViewRect);
    m_player.display.Update();
  }
  void Type(char c) {
    const uint16_t code = static_cast<uint8_t>(c);
    m_text->InsertWideChars(&code, 1);
    Paint();
    m_text->Backspace();
  }

  EditText* text() { return m_text; }
  int32_t edges() const { return m_player.display.edgeCount; }

 private:
  test::TestPlayer m_player;
  SObject* m_object;
  EditText* m_text;
};

// Characters a second.
void LayOutLongField(benchmark::State& state) {
  Scene scene(0, 240, Words(kLongText));
  for (auto _ : state) scene.LayOut();
  state.SetItemsProcessed(state.iterations() * kLongText);
}

// Characters typed into the middle of the long field, and painted.
void TypeIntoLongField(benchmark::State& state) {
  Scene scene(0, 240, Words(kLongText));
  scene.text()->selectionAnchor = scene.text()->selectionCursor = kLongText / 2;
  for (auto _ : state) scene.Type('x');
  state.SetItemsProcessed(state.iterations());
}

// Glyphs a second: 4,000 of them laid out, built and painted.
constexpr int32_t kScreenGlyphs = 4000;
void ScreenOfGlyphs(benchmark::State& state) {
  Scene scene(0, 340, Words(kScreenGlyphs));
  for (auto _ : state) scene.Paint();
  state.SetItemsProcessed(state.iterations() * kScreenGlyphs);
  state.counters["edges"] = scene.edges();
}
// The same without the painting.
void LayOutScreen(benchmark::State& state) {
  Scene scene(0, 340, Words(kScreenGlyphs));
  for (auto _ : state) scene.LayOut();
  state.SetItemsProcessed(state.iterations() * kScreenGlyphs);
}
// Painted only.
void RepaintScreen(benchmark::State& state) {
  Scene scene(0, 340, Words(kScreenGlyphs));
  for (auto _ : state) scene.Repaint();
  state.SetItemsProcessed(state.iterations() * kScreenGlyphs);
}

// A player's first field; the player itself is not counted.
void LoadFonts(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto player = std::make_unique<test::TestPlayer>(0, 0);
    state.ResumeTiming();
    benchmark::DoNotOptimize(player->LoadBuiltInFonts());
    state.PauseTiming();
    player.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(LayOutLongField)->Unit(benchmark::kMicrosecond);
BENCHMARK(TypeIntoLongField)->Unit(benchmark::kMicrosecond);
BENCHMARK(ScreenOfGlyphs)->Unit(benchmark::kMicrosecond);
BENCHMARK(LayOutScreen)->Unit(benchmark::kMicrosecond);
BENCHMARK(RepaintScreen)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadFonts)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vexel
