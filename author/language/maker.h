// The maker: runs a text and writes tags (internal to the language; the public
// door is make.h).
//
// One class, in sources by subject: statements of the language and timelines in
// maker.cpp, characters in make_*.cpp.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "author/language/clauses.h"
#include "author/language/make.h"
#include "author/language/names.h"
#include "author/vector_path.h"
#include "author/writer.h"

namespace vexel::author {

// A paint as it was said: its end is that of a morph.
struct PaintDef {
  FillStyle start;
  std::optional<FillStyle> end;
};
struct PenDef {
  LineStyle start;
  std::optional<LineStyle> end;
};

// A shape, a half of a morph or a glyph that is being drawn.
struct ShapeState {
  ShapeBuilder builder;
  double unit = kPixel;   // what a pixel of the text is stored as
  bool alpha = true;      // colours have alpha
  bool styles = true;     // has tables of its own
  int cubicPieces = 0;    // 0: as many as a cubic asks for
  bool handmade = false;  // has records of its own making
  std::map<std::string, uint32_t> paints;
  std::map<std::string, uint32_t> pens;
};

struct MorphState {
  std::vector<PaintDef> fills;
  std::vector<PenDef> lines;
  std::map<std::string, uint32_t> paints;
  std::map<std::string, uint32_t> pens;
  std::unique_ptr<ShapeState> start;
  std::unique_ptr<ShapeState> end;
  int fillBits = kAuto, lineBits = kAuto;  // of the start half
  int endFillBits = 0, endLineBits = 0;
};

// Frames as cells: a cursor walks over them, so that a frame can be filled in
// several goes.
struct Timeline {
  struct Cell {
    TagStream tags;
    bool ended = false;
  };
  std::vector<Cell> cells{1};
  size_t current = 0;
  bool hasEnd = false;
  bool noEnd = false;
  uint32_t highest = 0;  // depth
  std::map<std::string, uint16_t> depths;

  Bytes Join() const;
  int Frames() const;
};

// The flags of a font of the second form that nobody forces.
uint16_t FontFlagsFor(const Font& font, bool layout);

class Maker : private CharacterNames {
 public:
  explicit Maker(MovieFiles& files);

  // Runs a whole text as the movie, and hands the movie over.
  MadeMovie Make(const std::string& name, std::string text);

  // For the dumper, which tries what it prints: the tags of whole statements.
  // Throws SourceError; characters that were defined on the way stay defined.
  Bytes Feed(const std::string& text);
  CharacterBook& characters() { return characters_; }
  const CharacterBook& characters() const { return characters_; }
  // Tokens read and work done, of what Make allows for a text.
  double Used() const { return in_.Used(); }

 private:
  using Handler = void (Maker::*)();
  struct Row {
    const char* word;
    uint8_t places;
    Handler handler;
  };
  static const Row kRows[];

  // The language itself (maker.cpp).
  void RunStatement(uint8_t place);
  void RunBlock(uint8_t place);
  void SkipBlock();
  Clauses ReadClauses();
  void Let();
  void Repeat();
  void If();
  void Define();
  void Use();
  void Include();

  // Timelines (make_timeline.cpp).
  Timeline& Line() { return *timelines_.back(); }
  TagStream& Tags() { return Line().cells[Line().current].tags; }
  void Emit(int code, const Bytes& body, const Clauses& clauses);
  void Emit(int code, BitWriter& body, const Clauses& clauses) { Emit(code, body.Take(), clauses); }
  void CountOutput(size_t bytes);
  void EndFrame();
  uint16_t Target(const char* what);
  void Movie();
  void Frame();
  void At();
  void Tween();
  void PlaceCharacter();
  void MoveObject();
  void RemoveObject();
  void Background();
  void Label();
  void Code();
  void Free();
  void FreeAll();
  void Sync();
  void EndTag();
  void NoEnd();
  void AnyTag();
  void RawBytes();
  void Sprite();
  Bytes CodeBlock(bool script);
  void WritePlacement(BitWriter& body, const Clauses& clauses, uint16_t depth,
                      std::optional<uint16_t> character, bool move);
  void OpenSprite();
  void CloseSprite(uint16_t id, const Clauses& clauses);
  Bytes Header(const Bytes& tags, int frames) const;

  // Names of characters (maker.cpp).
  int32_t FindCharacter(const std::string& name) const override;
  uint16_t CharacterRef(const char* what);
  uint16_t NewCharacter();

  // Outlines (make_shape.cpp).
  void Shape();
  void Paint();
  void Pen();
  void Fill();
  void Fill0();
  void Stroke();
  void Layer();
  void Path();
  void RectFigure();
  void Circle();
  void Ellipse();
  void Polygon();
  void OpenLine();
  void Change();
  void Edge();
  void Curve();
  ShapeState& Drawing() { return *shape_; }
  FillStyle ToFillStyle(const Clauses& clauses);
  void GradientOf(const Clauses& clauses, FillStyle* fill);
  LineStyle ToLineStyle(const Clauses& clauses);
  Clauses StyleClauses(bool bareColor, std::optional<Color>* bare);
  static bool IsColorWord(const std::string& word);
  static std::string ColorKey(Color color);
  void CheckAlpha(Color color) const;
  uint32_t Index(double number, const SourcePlace& place) const;
  uint32_t ResolveFill();
  uint32_t ResolvePen();
  uint32_t AddFill(const FillStyle& fill);
  uint32_t AddLine(const LineStyle& line);
  StyleTables EmptyTables(const Clauses& clauses);
  void NewTables(ShapeRecord record, const Clauses& clauses);
  void CountRecord();
  void Draw(VectorPath path, const Clauses& clauses, bool closed);
  void Cubic(Point control1, Point control2, Point anchor);
  void EllipseAt(double x, double y, double rx, double ry, const Clauses& clauses);
  void PointList(const char* what, bool closed);
  std::vector<double> FigureNumbers(const char* what, size_t fewest, size_t most);
  Point ToPoint(Vec2 p);
  void CheckPen(Point delta);
  void DrawIn(ShapeState& state);

  // Morphs (make_morph.cpp).
  void Morph();
  void MorphStart();
  void MorphEnd();
  void MorphHalf(std::unique_ptr<ShapeState>* half, int* fillBits, int* lineBits);

  // Bitmaps and art (make_picture.cpp).
  void Picture();
  void PictureFile(const Clauses& clauses, BitWriter& body);
  void JpegTables();
  void Art();
  std::string ReadFile(const std::string& path, const SourcePlace& place);
  std::string Beside(const std::string& path) const;

  // Buttons (make_button.cpp).
  void Button();
  void ButtonBlock(const Bytes& block);
  void ButtonColors();
  void Show();
  void On();
  void ColorEntry();

  // Fonts and text (make_text.cpp).
  void FontCharacter();
  Font FontOfFile(const Clauses& clauses);
  void FontInfo();
  void GlyphEntry();
  void TextCharacter();
  void Run();
  void RunLetters(const Clauses& clauses, TextRun* run);
  void AlignRun(const Clauses& clauses, TextRun* run);
  void GrowText(const TextRun& run);
  void Edit();

  MovieFiles& files_;
  Evaluator in_;
  std::vector<std::unique_ptr<SourceUnit>> units_;
  std::map<std::string, const SourceUnit*> unitsByPath_;
  std::vector<std::string> including_;
  struct Macro {
    Evaluator::Cursor body;
    std::vector<std::string> names;
  };
  std::map<std::string, Macro> macros_;
  const StatementInfo* statement_ = nullptr;  // that is being run
  SourcePlace statementPlace_;
  uint8_t place_ = kInMovie;
  int depth_ = 0;

  std::vector<std::unique_ptr<Timeline>> timelines_;
  std::optional<Clauses> header_;
  size_t output_ = 0;
  size_t sourceBytes_ = 0;

  CharacterBook characters_;
  std::map<std::string, PaintDef> paints_;
  std::map<std::string, PenDef> pens_;

  ShapeState* shape_ = nullptr;
  MorphState* morph_ = nullptr;

  struct ButtonState {
    int form = 2;
    BitWriter records;
    std::vector<Bytes> actions;  // form 2: with the condition word in front
    Bytes block;                 // form 1
    uint32_t highest = 0;
    bool hasBlock = false;
  };
  ButtonState* button_ = nullptr;
  BitWriter* colors_ = nullptr;
  struct FontState {
    author::Font font;
    int form = 2;
    bool layout = false;
  };
  FontState* font_ = nullptr;
  struct TextState {
    StaticText text;
    bool alpha = true;
    Rect bounds;
    bool hasBounds = false;
    Point pen;
    uint16_t font = 0;
    uint16_t height = 240;
  };
  TextState* text_ = nullptr;
  std::map<uint16_t, author::Font> fonts_;

  MadeMovie made_;
};

}  // namespace vexel::author
