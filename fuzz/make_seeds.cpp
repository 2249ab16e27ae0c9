// make_seeds FOLDER: writes the first inputs of every target into
// FOLDER/<target>, so that none need to be kept with the sources.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>

#include "action_blocks.h"
#include "author/language/dump.h"
#include "author/records.h"
#include "author/writer.h"
#include "field_input.h"
#include "host/wire_packets.h"
#include "random_block.h"
#include "support/random_movie.h"
#include "support/small_font.h"

namespace {

using namespace vexel::author;
using vexel::kActionStop;

class Seeds {
 public:
  Seeds(const std::filesystem::path& folder, const char* target) : folder_(folder / target) {
    std::filesystem::create_directories(folder_);
  }
  void Add(std::span<const uint8_t> bytes) {
    const std::string name = std::to_string(++count_);
    if (!WriteFile((folder_ / name).string(), bytes)) std::exit(1);
  }

 private:
  std::filesystem::path folder_;
  int count_ = 0;
};

// Tags that random movies don't hold.
Bytes OddTags() {
  MovieWriter movie(40, 30);
  ShapeBuilder shape;
  shape.Style(shape.AddFill(Color{9, 99, 199}), shape.AddLine(40, {1, 2, 3}))
      .Ellipse(Pixels(20, 15), 300, 200);
  const Font font = BlockFont("Odd");
  movie.DefineShape(1, shape).Place(1, 1).DefineFont(2, font).DefineFontInfo(2, font, 6, true);
  EditTextField field;
  field.font = 2;
  field.flags = kEditBorder | kEditOutlines | kEditMultiline | kEditWordWrap;
  field.variable = "v";
  field.initialText = "Odd one\rtwo";
  movie.DefineEditText(3, Rect::Pixels(0, 0, 38, 28), field).Place(3, 2);
  movie.FrameActions(ActionBuilder().SetVariable("v", "new").Op(kActionStop).GetURL("u", "w"));
  movie.FrameEnd().FreeCharacter(1).RemoveObject(1, 1).SyncFrame().FreeAll();
  movie.Tag(777, Bytes{1, 2, 3}).FrameEnd().End();
  return movie.Finish();
}

void Movies(const std::filesystem::path& folder, const char* target) {
  Seeds seeds(folder, target);
  RandomMovieOptions options;
  options.maxFrames = 4;
  for (uint32_t seed = 0; seed < 60; ++seed) {
    options.fields = seed % 2 == 0;
    options.actions = seed % 3 == 0;
    seeds.Add(RandomMovie(seed, options));
  }
  seeds.Add(OddTags());
}

Bytes WithKind(uint8_t kind, const Bytes& body) {
  Bytes bytes(body.size() + 1, kind);
  std::copy(body.begin(), body.end(), bytes.begin() + 1);
  return bytes;
}

void Bitmaps(const std::filesystem::path& folder) {
  Seeds seeds(folder, "bitmap");
  Picture picture(11, 7);
  for (size_t i = 0; i < picture.pixels.size(); ++i) {
    picture.pixels[i] = {static_cast<uint8_t>(i * 3), static_cast<uint8_t>(255 - i),
                         static_cast<uint8_t>(i * 7), static_cast<uint8_t>(i * 2)};
  }
  // Kinds by their place in the list of the entry.
  enum : uint8_t { kShared, kLossless, kJpeg, kJpegAlpha, kLosslessAlpha };
  Bytes shared = {0, 0};
  const Bytes image = EncodeJpeg(picture, 75, JpegParts::kImageOnly);
  shared.insert(shared.end(), image.begin(), image.end());
  seeds.Add(WithKind(kShared, shared));
  const Bytes tables = EncodeJpeg(picture, 75, JpegParts::kTablesOnly);
  Bytes own = {static_cast<uint8_t>(tables.size()), static_cast<uint8_t>(tables.size() >> 8)};
  own.insert(own.end(), tables.begin(), tables.end());
  own.insert(own.end(), image.begin(), image.end());
  seeds.Add(WithKind(kShared, own));
  seeds.Add(WithKind(kJpeg, EncodeJpeg(picture, 40)));
  seeds.Add(WithKind(kJpeg | 0x80, EncodeGreyJpeg(picture, 90)));
  Bytes plane;
  for (const Color& color : picture.pixels) plane.push_back(color.alpha);
  seeds.Add(WithKind(kJpegAlpha, EncodeJpegAlpha(EncodeJpeg(picture, 90), plane)));
  seeds.Add(WithKind(kLossless, EncodeLossless(LosslessFromPicture(picture, false), false)));
  seeds.Add(WithKind(kLosslessAlpha, EncodeLossless(LosslessFromPicture(picture, true), true)));
  for (int format = kBitmap1; format <= kBitmap8; ++format) {
    const int colors = 1 << (1 << format);
    std::vector<uint8_t> indexes(picture.pixels.size());
    for (size_t i = 0; i < indexes.size(); ++i)
      indexes[i] = static_cast<uint8_t>(i % static_cast<size_t>(colors));
    std::vector<Color> table(static_cast<size_t>(colors), Color{50, 100, 150, 200});
    const LosslessBody body =
        LosslessFromIndexes(format, picture.width, picture.height, indexes, table);
    seeds.Add(WithKind(kLossless | 0x80, EncodeLossless(body, false)));
    seeds.Add(WithKind(kLosslessAlpha, EncodeLossless(body, true)));
  }
  LosslessBody body;
  body.format = kBitmap16;
  body.width = 5;
  body.height = 4;
  body.rows.assign(BitmapRowBytes(kBitmap16, 5) * 4, 0x3D);
  seeds.Add(WithKind(kLossless, EncodeLossless(body, false)));
}

void Texts(const std::filesystem::path& folder) {
  Seeds seeds(folder, "make");
  for (uint32_t seed = 1; seed <= 12; ++seed) {
    RandomMovieOptions options;
    options.fields = options.actions = true;
    const std::string text = DumpMovie(RandomMovie(seed, options));
    seeds.Add(Bytes(text.begin(), text.end()));
  }
  static constexpr std::string_view kText =
      "movie size 99, 99 rate 24 let a = 3 define d(x, c) { fill c circle x, 9, a }\n"
      "shape s { repeat 4 as i { if i > 1 { use d(9*i, red) } else { use d(i, #00f) } } }\n"
      "sprite w { frame { place s as o at 1, 2 rotate 3 } tween 5 as t { move o alpha t } }\n"
      "frame \"x\" { place w as h depth 4 tint red by 50% } at frame 7 { remove h }\n"
      "font f blocks name \"B\" text t { run font f height 9 color red text \"A1\" }\n"
      "button b { show s in up hit on press, key \"a\" script { stop(); } }\n";
  seeds.Add(Bytes(kText.begin(), kText.end()));
}

// Sessions as a client leads them, in the calls of the entry: open a stream, send
// it, let time pass, use the mouse and the keys, answer for files.
void Sessions(const std::filesystem::path& folder) {
  Seeds seeds(folder, "session");
  const auto join = [](std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  };
  const Bytes file = {0, 2, 5, 7, 208, 13};
  const Bytes messages = {0, 2, 4, 1, 244, 13};
  const Bytes wholeFile = {6, 0, 0, 255, 255, 1, 255, 0, 128};
  const Bytes twoPieces = {6, 0, 0, 0, 40, 1, 255, 0, 128, 6, 0, 60, 255, 255, 1, 255, 0, 128};
  const Bytes object = {4, 0, 0, 0, 19, 0, 120, 0, 0, 0, 128};
  const Bytes atOnce = {4, 5, 0, 0, 150, 0, 60, 0, 0, 0, 128};
  const Bytes waiting = {4, 17, 0, 0, 150, 0, 60, 0, 5, 0, 128};
  Bytes syncs;
  for (int i = 0; i < 12; ++i) syncs.insert(syncs.end(), {8, 25});
  const Bytes events = {15, 6, 20, 20, 1,  15, 4, 1, 20, 20, 1, 15, 5, 1, 20,
                        20, 1, 15, 2,  81, 0,  1, 1, 15, 2,  0, 97, 0, 1};
  const Bytes answers = {18, 1, 7, 18, 1, 7, 18, 1, 7};
  const Bytes endOfPackets = {12};
  const Bytes detachInside = {16, 1};
  const Bytes resizeInside = {16, 3};
  const Bytes newSize = {17, 1, 1, 30, 30};
  const Bytes otherStream = {1, 0, 2, 36, 0, 9};
  seeds.Add(join({file, wholeFile, syncs, events, answers, endOfPackets, syncs}));
  seeds.Add(join({file, twoPieces, syncs, events}));
  seeds.Add(join({messages, object, atOnce, waiting, syncs, events}));
  seeds.Add(join({file, wholeFile, detachInside, syncs, events}));
  seeds.Add(join({file, wholeFile, resizeInside, syncs, newSize, syncs}));
  seeds.Add(join({file, wholeFile, syncs, otherStream, syncs, answers}));
}

void Svgs(const std::filesystem::path& folder) {
  Seeds seeds(folder, "svg");
  const char* const bodies[] = {
      "<rect x='2' y='3' width='20' height='10' rx='2' fill='#c33' stroke='blue' "
      "stroke-width='2'/>",
      "<circle cx='15' cy='15' r='9' fill='rgb(10,200,30)' opacity='.5'/><ellipse cx='9' cy='9' "
      "rx='7' ry='3'/>",
      "<path d='M2 2 L30 4 C 30 20 10 30 5 25 Q 1 20 4 12 T 9 9 S 20 20 22 22 A 5 7 30 1 0 12 14 "
      "h3v4H2V3z' fill-rule='evenodd' fill='none' stroke='#123456' stroke-linejoin='round'/>",
      "<defs><linearGradient id='g' x1='0' x2='1'><stop offset='0' stop-color='red'/><stop "
      "offset='100%' stop-color='#00f' stop-opacity='.3'/></linearGradient></defs><rect "
      "width='30' height='30' fill='url(#g)'/>",
      "<radialGradient id='r' cx='50%' cy='40%' r='60%' gradientUnits='objectBoundingBox' "
      "spreadMethod='reflect'><stop offset='.2'/><stop offset='.9' stop-color='gold'/>"
      "</radialGradient><polygon points='1,1 20,4 12,25' style='fill:url(#r);stroke:none'/>",
      "<g transform='translate(3 4) rotate(30) scale(1.5,.5) skewX(10) matrix(1 0 0 1 2 "
      "2)'><polyline points='0 0 10 10 20 0' stroke='#fff' fill='none' stroke-dasharray='3 "
      "2'/><line x1='0' y1='0' x2='9' y2='9' stroke='red'/></g>",
      "<clipPath id='c'><circle cx='10' cy='10' r='8'/></clipPath><g clip-path='url(#c)'><use "
      "href='#s'/></g><symbol id='s' viewBox='0 0 4 4'><rect width='4' height='4'/></symbol>",
      "<style>.a{fill:#0f0;stroke:red}</style><rect class='a' width='9' height='9'/><text x='2' "
      "y='9'>Hi</text><mask id='m'><rect width='5' height='5' fill='white'/></mask>",
  };
  for (const char* body : bodies) {
    std::string text = "<svg xmlns='http://www.w3.org/2000/svg' width='32' height='32'>";
    text += body;
    text += "</svg>";
    seeds.Add({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
  }
}

void Fonts(const std::filesystem::path& folder) {
  Seeds seeds(folder, "font");
  using vexel::test::SquareContour;
  vexel::test::SmallFont font;
  font.glyphs = {{' ', 250},
                 {'A', 600, {SquareContour(100, 0, 400, 700), SquareContour(0, 200, 700, 90)}},
                 {'o', 500, {{{0, 300, false}, {300, 300}, {300, 0, false}, {0, 0}}}},
                 {'p', 500, {}, {2, 3}},
                 {0x416, 500, {SquareContour(0, -100, 300, 300)}}};
  font.kerning = {{2, 3, -40}, {3, 3, 9}};
  seeds.Add(vexel::test::TrueTypeFile(font));
  font.glyphs = {
      {'A', 600, {vexel::test::CubicCircle(300, 300, 200)}},
      {'B',
       600,
       {vexel::test::CubicCircle(300, 300, 200), vexel::test::CubicCircle(400, 300, 90)}}};
  font.kerning = {};
  seeds.Add(vexel::test::OpenTypeFile(font));
}

void ActionTexts(const std::filesystem::path& folder) {
  Seeds seeds(folder, "actions_text");
  // Kinds as the entry chooses them.
  enum : uint8_t { kBlock, kMnemonics, kScript };
  ActionBuilder block;
  const ActionBuilder::Label loop = block.NewLabel();
  block.Bind(loop).Push("i").PushFloat(0.1f).Op(vexel::kActionAdd).If(loop);
  block.GotoFrame(3).WaitForFrame(2, 1).GetURLExpr(0x41).GetURL("a", "b");
  seeds.Add(WithKind(kBlock, block.Finish()));
  const auto text = [&](uint8_t kind, std::string_view source) {
    seeds.Add(WithKind(kind, Bytes(source.begin(), source.end())));
  };
  text(kMnemonics,
       "a: push \"t\\x41\"; push bits 0x7fc00001 surplus 00\njump a // on\n"
       "getURLExpr get target; if by -3; waitForFrame 3 skip 2; action 0xa0 01\n"
       "push raw 07; end; bytes 9601; noend");
  text(kScript,
       "x = -a * (2 + b.x) & \"t\"; /c:d += 1\nif (not x is \"t\" and 1 < 2) { stop() } "
       "else while (x) { with \"/c\" { break } }\nifLoaded (3) gotoAndPlay(\"l\")\n"
       "startDrag(this, true, 1, 2, 3, 4); setProperty(p, alpha, random(3))");
}

// A few blocks each, sensible ones and others.
void Actions(const std::filesystem::path& folder) {
  Seeds seeds(folder, "actions");
  for (uint32_t seed = 0; seed < 80; ++seed) {
    vexel::model::script::Lots lots(seed);
    vexel::model::script::BlockStyle style;
    style.odd = seed % 4 == 0;
    style.loops = seed % 5 == 0;
    style.length = 2 + static_cast<int>(seed % 8);
    std::vector<vexel::fuzz::Block> blocks;
    for (uint32_t n = 1 + seed % 5; n > 0; --n) {
      blocks.push_back(vexel::model::script::RandomBlock(lots, style));
    }
    seeds.Add(vexel::fuzz::WriteBlocks(blocks));
  }
}

// What the input of the target for fields is made of.
class FieldSeed {
 public:
  void Fonts(vexel::fuzz::FieldFonts fonts) {
    m_out.U8(fonts);
    const Font font = BlockFont("_typewriter");
    BitWriter tag;
    if (fonts == vexel::fuzz::kForm2) {
      WriteFont2(tag, font);
      Body(tag.bytes());
    } else if (fonts == vexel::fuzz::kForm1) {
      WriteFont(tag, font);
      Body(tag.bytes());
      BitWriter info;
      WriteFontInfo(info, font, 0, false);
      Body(info.bytes());
    }
  }
  void Fields(const std::vector<EditTextField>& fields, uint8_t bounds, uint8_t repeats) {
    m_out.U8(static_cast<uint32_t>(fields.size() - 1));
    for (const EditTextField& field : fields) {
      m_out.U8(bounds);
      m_out.U8(repeats);
      BitWriter record;
      WriteEditText(record, field);
      Body(record.bytes());
    }
  }
  FieldSeed& Op(vexel::fuzz::FieldOp op, std::initializer_list<uint8_t> operands = {}) {
    m_out.U8(op);
    for (const uint8_t operand : operands) m_out.U8(operand);
    return *this;
  }
  FieldSeed& Text(std::string_view text) {
    m_out.U8(static_cast<uint32_t>(text.size()));
    m_out.Append({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    return *this;
  }
  FieldSeed& Click(uint8_t x, uint8_t y) {
    return Op(vexel::fuzz::kOpDown, {x, y}).Op(vexel::fuzz::kOpUp, {x, y});
  }
  FieldSeed& Type(std::string_view text) {
    for (const char c : text) Op(vexel::fuzz::kOpKey, {static_cast<uint8_t>(c), 0});
    return *this;
  }
  const Bytes& bytes() const { return m_out.bytes(); }

 private:
  void Body(const Bytes& bytes) {
    m_out.U16(static_cast<uint32_t>(bytes.size()));
    m_out.Append(bytes);
  }

  BitWriter m_out;
};

// Fields of all kinds, each seed with other flags, in every kind of font.
void Fields(const std::filesystem::path& folder) {
  using namespace vexel::fuzz;
  Seeds seeds(folder, "field");
  constexpr uint16_t kFlags[] = {0,
                                 kEditMultiline | kEditWordWrap | kEditBorder,
                                 kEditPassword,
                                 kEditReadOnly | kEditMultiline,
                                 kEditNoSelect,
                                 kEditWordWrap};
  constexpr uint8_t kRepeats[] = {255, 3, 12, 20};
  for (uint8_t seed = 0; seed < 24; ++seed) {
    FieldSeed input;
    input.Fonts(static_cast<FieldFonts>(seed % kFieldFontsCount));
    std::vector<EditTextField> fields;
    for (uint8_t i = 0; i <= seed % 3; ++i) {
      EditTextField field;
      field.flags = kFlags[(seed + i) % std::size(kFlags)];
      if (seed % 5 != 0) field.flags |= kEditOutlines;
      field.font = 1;
      field.height = static_cast<uint16_t>(seed % 7 == 0 ? 0 : 60 * (1 + i));
      field.variable = kFieldVariables[i % std::size(kFieldVariables)];
      if (seed % 2) field.initialText = "one two\rthree four";
      if (seed % 3 == 1) field.maxLength = static_cast<uint16_t>(seed);
      if (seed % 4 == 3) field.layout = EditTextLayout{i, 40, 60, 20, -10};
      fields.push_back(field);
    }
    input.Fields(fields, static_cast<uint8_t>(seed % 8), kRepeats[seed % std::size(kRepeats)]);
    input.Click(5, 5).Type("Ab 1\r").Op(kOpBlink).Op(kOpDraw);
    for (uint8_t key = 1; key <= 18; ++key) input.Op(kOpKey, {key, static_cast<uint8_t>(seed & 3)});
    input.Op(kOpDown, {3, 3}).Op(kOpMove, {50, 20}).Op(kOpDraw).Op(kOpUp, {60, 47});
    input.Op(kOpSet, {0}).Text("new text").Op(kOpScroll, {0, 2}).Op(kOpGet, {0, 1, 2});
    input.Op(kOpSeek, {seed}).Op(kOpSeek, {0}).Op(kOpPlay, {3}).Op(kOpPaste).Text("in\r\n\xFF");
    input.Op(kOpView, {seed}).Op(kOpProperty, {7, 0}).Op(kOpProperty, {10, 30});
    input.Op(kOpCode, {0x41, 0x81}).Op(kOpWait, {20});
    seeds.Add(input.bytes());
  }
}

void Scripts(const std::filesystem::path& folder) {
  Seeds seeds(folder, "run");
  const char* const scripts[] = {
      "clock 100\nclock 300\ntree\ndirty\n",
      "# a comment\n\nstep\nstep 3\nframe /\nframe a\nframe /a/b\nseek 0\nplay\nstop\n",
      "zoom 50\npan 3 4\nzoom 200\nhome\nquality low\nquality high\n",
      "move 25 20\ndown 25 20\nmove 2 2\nup 2 2\nhit 25 20\nhit 0 0\n",
      "get x\nset x=two words\nget /:x\nget nothing\nset a:v=1\n",
      "prop a 0\nsetprop a 10 45\nprop / 11\n",
      "key tab\nkey left shift\nkey 13\ntype some text\nblink\nwait 500\nget v\n",
      "down 3 4\nmove 9 4\nup 9 4\nkey copy\nkey cut\nkey paste\npaste now\nblink\nget v.scroll\n",
  };
  for (const char* script : scripts) {
    const std::string text = script;
    seeds.Add({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
  }
}

void Http(const std::filesystem::path& folder) {
  Seeds messages(folder, "http");
  for (const char* text :
       {"GET /redirect0.html HTTP/1.1\r\nHost: 127.0.0.1:1234\r\nAccept: a/b;q=0.9, */*\r\n\r\n",
        "GET /redirect0.html\r\n", "HEAD / HTTP/1.0\n\nGET /a HTTP/1.0\nX: one\n two\n\n",
        "HTTP/1.0 401 No\r\nWWW-Authenticate: Digest realm=\"r\", nonce=n, opaque=o\r\n\r\n",
        "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"a b\"\r\nContent-Length: 5\r\n\r\n",
        "\r\n POST \"\\a\" HTTP/1.0\n\r\n\r"}) {
    messages.Add({reinterpret_cast<const uint8_t*>(text), strlen(text)});
  }
  Seeds options(folder, "options");
  for (const char* text :
       {"a=1&b=2", " name = value &q=\"x & y\"&c=", "a=\"1\"  b=2", "a", "a=\""}) {
    options.Add({reinterpret_cast<const uint8_t*>(text), strlen(text)});
  }
}

// A packet, or another piece, for the target `packets`.
void PutPiece(Bytes& out, uint8_t kind, const Bytes& packet) {
  out.push_back(kind);
  vexel::test::PutBig(out, packet.size(), 2);
  out.insert(out.end(), packet.begin(), packet.end());
}

// Streams of a few packets.
void Packets(const std::filesystem::path& folder) {
  using vexel::test::CutHead;
  using vexel::test::FragmentRecord;
  Seeds seeds(folder, "packets");
  Bytes linear = {0, 0, 0, 0};
  PutPiece(linear, 0, vexel::test::WholeRecord(40, Bytes(9, 1)));
  PutPiece(linear, 1, FragmentRecord(7, 0, Bytes(8, 1), false));
  PutPiece(linear, 1, FragmentRecord(7, 16, Bytes(8, 3), true));
  linear.insert(linear.end(), {7, 0, 7});
  PutPiece(linear, 1, FragmentRecord(7, 8, Bytes(8, 2), false));
  PutPiece(linear, 1, FragmentRecord(60001, 0, Bytes(5, 4), true));
  seeds.Add(linear);
  Bytes file = {1, 20, 1, 0};
  PutPiece(file, 1, CutHead{20, 0, 1, 2, 0, 0, 30}.With(Bytes(40, 1)));
  PutPiece(file, 1, CutHead{60, 1, 1, 1, 10, 20, 0}.With(Bytes(20, 2)));
  PutPiece(file, 1, CutHead{120, 4, 5, 2, 0, 0, 10}.With(Bytes(20, 3)));
  PutPiece(file, 1, CutHead{80, 2, 3, 4, 0, 0, 0}.With(Bytes(40, 4)));
  PutPiece(file, 1, CutHead{160, 5, 6, 1, 30, 20, 0}.With(Bytes(40, 5)));
  PutPiece(file, 1, CutHead{140, 5, 5, 7, 10, 20, 0}.With(Bytes(20, 6)));
  seeds.Add(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_seeds FOLDER\n", stderr);
    return 2;
  }
  Movies(argv[1], "movie");
  Movies(argv[1], "check");
  Movies(argv[1], "dump");
  Texts(argv[1]);
  Bitmaps(argv[1]);
  Svgs(argv[1]);
  Sessions(argv[1]);
  Fonts(argv[1]);
  Http(argv[1]);
  ActionTexts(argv[1]);
  Actions(argv[1]);
  Packets(argv[1]);
  Scripts(argv[1]);
  Fields(argv[1]);
  return 0;
}
