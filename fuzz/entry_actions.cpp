// Action blocks in a movie that gives them something to act on: nested sprites
// with labels, a button, a field. The blocks stand in the frames and on the
// button; the movie is played, and the button pressed.
#include <algorithm>

#include "action_blocks.h"
#include "author/writer.h"
#include "entries.h"
#include "fuzz_player.h"

namespace vexel::fuzz {

namespace {

using namespace author;

enum : uint16_t { kBox = 1, kInner = 2, kOuter = 3, kButtonId = 4, kFont = 5, kField = 6 };

// The block of a place in the movie, or one that ends at once.
class Places {
 public:
  explicit Places(std::vector<Block> blocks) : m_blocks(std::move(blocks)) {}
  Block Next() { return m_next < m_blocks.size() ? m_blocks[m_next++] : Block{0}; }

 private:
  std::vector<Block> m_blocks;
  size_t m_next = 0;
};

void PlaceNamed(TagStream* out, uint16_t character, uint16_t depth, const char* name,
                const Matrix& matrix = {}) {
  Placement place;
  place.character = character;
  place.depth = depth;
  place.name = name;
  place.matrix = matrix;
  out->Place(place);
}

Bytes MakeMovie(Places places) {
  MovieWriter movie(64, 48);
  ShapeBuilder box;
  box.Style(box.AddFill(Color{200, 40, 40})).Rectangle(Rect::Pixels(0, 0, 20, 20));
  movie.DefineShape(kBox, box);

  const Block main = places.Next();
  TagStream inner;
  inner.Place(kBox, 1).FrameLabel("one").FrameActions(places.Next()).FrameEnd();
  inner.FrameLabel("two").FrameActions(places.Next()).FrameEnd().End();
  movie.DefineSprite(kInner, inner);

  TagStream outer;
  PlaceNamed(&outer, kInner, 1, "b");
  outer.Place(kInner, 2, Matrix::Translate(300, 200));
  outer.FrameActions(places.Next()).FrameEnd();
  outer.FrameLabel("loop").RemoveObject(2).FrameActions(places.Next()).FrameEnd().End();
  movie.DefineSprite(kOuter, outer);

  const std::vector<ButtonRecord> records = {
      {kButtonUp | kButtonOver | kButtonHit, kBox, 1, {}, {}},
      {kButtonDown, kInner, 2, {}, {}},
  };
  movie.DefineButton2(kButtonId, false, records,
                      {{1 << kEventPress, places.Next()},
                       {1 << kEventRelease | 1 << kEventRollOver | 'k' << 9, places.Next()}});
  const Font font = BlockFont("Plain");
  movie.DefineFont2(kFont, font);
  EditTextField field;
  field.font = kFont;
  field.variable = "v";
  field.initialText = "text";
  movie.DefineEditText(kField, Rect::Pixels(0, 0, 30, 12), field);

  PlaceNamed(&movie, kOuter, 1, "a");
  movie.Place(kButtonId, 2, Matrix::Translate(600, 400)).Place(kField, 3);
  movie.FrameLabel("one").FrameActions(main).FrameEnd();
  movie.FrameLabel("two").FrameActions(places.Next()).FrameEnd();
  movie.FrameLabel("v_changed").Move(1, Matrix::Translate(100, 100)).FrameActions(places.Next());
  movie.FrameEnd().End();
  return movie.Finish();
}

// Blocks that clone sprites without end make every picture cost a second.
constexpr int32_t kCrowd = 2000;

}  // namespace

void FuzzActions(const uint8_t* data, size_t size) {
  if (size > 0x8000) return;
  const Bytes movie = MakeMovie(Places(ReadBlocks(data, size)));
  FuzzPlayer player;
  player.PushDataBuf(movie.data(), static_cast<int32_t>(movie.size()));
  player.PushDataComplete();
  const auto draw = [&player] {
    if (player.display.objectCount < kCrowd) player.Redraw();
  };
  draw();
  player.PlayTo(100);
  draw();
  const SPOINT on = {35, 25}, off = {2, 46};
  player.MouseMove(&on, false);
  player.MouseDown(&on);
  player.PlayTo(200);
  draw();
  player.MouseUp(&on);
  player.MouseMove(&off, false);
  player.HandleKeyDown('k', 0);
  player.PlayTo(500);
  player.GotoFrame(0);
  draw();
}

}  // namespace vexel::fuzz
