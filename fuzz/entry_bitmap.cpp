// A bitmap behind a movie of one frame: a shape of the whole view is filled
// with it, tiled and turned, so that its pixels are decoded and sampled.
#include <algorithm>
#include <vector>

#include "author/writer.h"
#include "entries.h"
#include "fuzz_player.h"

namespace vexel::fuzz {

namespace {

using namespace author;

constexpr int kCodes[] = {kTagDefineBits, kTagDefineBitsLossless, kTagDefineBitsJPEG,
                          kTagDefineBitsJPEGAlpha, kTagDefineBitsLosslessAlpha};

const Bytes& GoodTables() {
  static const Bytes tables = EncodeJpeg(Picture(8, 8), 75, JpegParts::kTablesOnly);
  return tables;
}

}  // namespace

void FuzzBitmap(const uint8_t* data, size_t size) {
  if (size < 1 || size > (1 << 16)) return;
  const int code = kCodes[data[0] % std::size(kCodes)];
  const bool clipped = (data[0] & 0x80) != 0;
  std::span<const uint8_t> body(data + 1, size - 1);
  MovieWriter movie(kViewWidth, kViewHeight);
  if (code == kTagDefineBits && body.size() >= 2) {
    const size_t length = std::min<size_t>(body[0] | body[1] << 8, body.size() - 2);
    body = body.subspan(2);
    movie.DefineJPEGTables(
        length == 0 ? GoodTables()
                    : Bytes(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(length)));
    body = body.subspan(length);
  }
  movie.DefineBits(1, code, Bytes(body.begin(), body.end()));
  ShapeBuilder shape;
  shape.Style(shape.AddFill(FillStyle::Bitmap(1, Matrix::Scale(30, 20), clipped)))
      .Rectangle(Rect::Pixels(0, 0, kViewWidth, kViewHeight / 2));
  shape.Style(shape.AddFill(FillStyle::Bitmap(1, Matrix::Rotate(25, 14, -9, 400, 500), clipped)))
      .Rectangle(Rect::Pixels(0, kViewHeight / 2, kViewWidth, kViewHeight));
  movie.DefineShape(2, shape).Place(2, 1);
  Placement tinted;
  tinted.character = 2;
  tinted.depth = 2;
  tinted.matrix = Matrix::Scale(0.5, 0.5);
  tinted.cxform = Cxform::Tint({200, 10, 90}, 0.4);
  movie.Place(tinted).FrameEnd().End();
  const Bytes bytes = movie.Finish();
  for (const int32_t format : {pix32, pix8}) {
    FuzzPlayer player(format);
    player.PushDataBuf(bytes.data(), static_cast<int32_t>(bytes.size()));
    player.PushDataComplete();
    player.Redraw(true);
    player.FreeCache();
    player.SetQuality(false);
    player.Redraw(true);
  }
}

}  // namespace vexel::fuzz
