// Scripts of `vexel run` over a fixed movie. Pictures are not written, and
// what the commands print goes nowhere.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "author/writer.h"
#include "entries.h"
#include "tools/run_script.h"
#include "tools/status.h"

namespace vexel::fuzz {

namespace {

using namespace author;

Bytes MakeMovie() {
  MovieWriter movie(40, 30);
  ShapeBuilder box;
  box.Style(box.AddFill(Color{40, 160, 90}), box.AddLine(20, Color{0, 0, 0}))
      .Rectangle(Rect::Pixels(0, 0, 16, 12));
  movie.DefineShape(1, box);
  TagStream sprite;
  sprite.Place(1, 1).FrameLabel("in").FrameEnd().Move(1, Matrix::Rotate(30)).FrameEnd().End();
  movie.DefineSprite(2, sprite);
  const Bytes pressed = ActionBuilder()
                            .SetVariable("pressed", "1")
                            .Push("/a")
                            .Push("0")
                            .Push("12")
                            .Op(kActionSetProperty)
                            .Finish();
  const std::vector<ButtonRecord> records = {
      {kButtonUp | kButtonOver | kButtonDown | kButtonHit, 1, 1, {}, {}}};
  movie.DefineButton2(3, true, records, {{0x1FF, pressed}});
  EditTextField field;
  field.variable = "v";
  field.initialText = "text";
  movie.DefineEditText(4, Rect::Pixels(0, 0, 20, 10), field);
  Placement place;
  place.character = 2;
  place.depth = 1;
  place.name = "a";
  movie.Place(place).Place(3, 2, Matrix::Translate(400, 300)).Place(4, 3);
  movie.FrameLabel("start").FrameActions(ActionBuilder().SetVariable("x", "1.5")).FrameEnd();
  movie.Move(3, Matrix::Translate(60, 80));
  movie.FrameActions(ActionBuilder().GetURL("page", "_self").SetVariable("y", "two")).FrameEnd();
  movie.RemoveObject(1).FrameEnd().End();
  return movie.Finish();
}

// Writes no files, and asks for no more steps than a test has time for.
bool IsHarmless(const std::string& line) {
  const size_t start = line.find_first_not_of(" \t");
  if (start == std::string::npos) return true;
  if (line.compare(start, 4, "shot") == 0) return false;
  size_t digits = 0;
  for (const char c : line) {
    digits = c >= '0' && c <= '9' ? digits + 1 : 0;
    if (digits > 4)
      return line.compare(start, 5, "clock") != 0 && line.compare(start, 4, "step") != 0;
  }
  return true;
}

class Silence {
 public:
  Silence() : m_kept(dup(STDOUT_FILENO)) {
    static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
  }
  ~Silence() {
    std::fflush(stdout);
    dup2(m_kept, STDOUT_FILENO);
    close(m_kept);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int m_kept;
};

}  // namespace

void FuzzRun(const uint8_t* data, size_t size) {
  if (size > 2000) return;
  tools::MovieFile movie;
  movie.path = "movie";
  movie.bytes = MakeMovie();
  movie.width = 40;
  movie.height = 30;
  std::istringstream all(std::string(reinterpret_cast<const char*>(data), size));
  std::string harmless;
  for (std::string line; std::getline(all, line);) {
    if (IsHarmless(line)) harmless += line + '\n';
  }
  const Silence silence;
  tools::Results results(size % 2 != 0);
  tools::PlayOptions play;
  play.calls = &results;
  tools::HeadlessPlayer player(movie, {}, play);
  player.Redraw();
  tools::RunScript script(&player, &results, "script");
  for (std::istringstream lines(harmless);;) {
    try {
      if (!script.RunNext(&lines)) return;
    } catch (const tools::Failure&) {
      // The command would end here; the lines behind it are worth a try too.
    }
  }
}

}  // namespace vexel::fuzz
