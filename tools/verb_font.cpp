// `vexel font`: a movie with a font in it, by the program beside this one.
#include <charconv>
#include <memory>
#include <string_view>

#include "options.h"
#include "status.h"
#include "verbs.h"
#include "worker.h"

namespace vexel::tools {

namespace {

constexpr uint32_t kLastCharacter = 0xFFFF;

struct FontWords {
  std::string file;
  std::string out;
  std::string chars;
  std::string range;
  bool builtIn = false;
};

// A character's number: 65, 0x41 or U+0041.
bool ReadNumber(std::string_view text, uint32_t* number) {
  int base = 10;
  if (text.starts_with("U+") || text.starts_with("0x")) {
    base = 16;
    text.remove_prefix(2);
  }
  const char* end = text.data() + text.size();
  const auto [at, error] = std::from_chars(text.data(), end, *number, base);
  return error == std::errc() && at == end && *number <= kLastCharacter;
}

std::vector<std::string> RangeWords(const std::string& range) {
  const std::string_view text = range;
  const size_t hyphen = text.find('-');
  uint32_t first, last;
  if (hyphen == text.npos || !ReadNumber(text.substr(0, hyphen), &first) ||
      !ReadNumber(text.substr(hyphen + 1), &last) || first > last)
    throw Failure(kMisused, "font",
                  "--range takes two characters, such as 32-126 or U+0410-U+044F: " + range);
  return {"range", std::to_string(first), std::to_string(last)};
}

void RunFont(const FontWords& words) {
  if (words.builtIn == !words.file.empty())
    throw Failure(kMisused, "font", "takes either FILE or --built-in");
  if (words.builtIn) RunWorker("vexel-font", {"built-in"});
  std::vector<std::string> all = {words.file, words.out};
  if (!words.chars.empty()) {
    all.insert(all.end(), {"chars", words.chars});
  } else if (!words.range.empty()) {
    const std::vector<std::string> range = RangeWords(words.range);
    all.insert(all.end(), range.begin(), range.end());
  }
  RunWorker("vexel-font", all);
}

}  // namespace

void AddFontVerb(CLI::App* app) {
  const auto words = std::make_shared<FontWords>();
  CLI::App* verb = AddVerb(app, "font", "make a movie that carries a font");
  AddText(verb, "FILE", "", &words->file, "the font, TrueType or OpenType");
  CLI::Option* chars =
      AddText(verb, "--chars", "", &words->chars, "its characters to take, in UTF-8");
  CLI::Option* range = AddText(verb, "--range", "A-B", &words->range,
                               "those from A to B, such as 32-126 or U+0410-U+044F");
  CLI::Option* out = AddText(verb, "-o", "MOVIE", &words->out, "the movie; as text if it ends in .vxt");
  CLI::Option* builtIn =
      AddFlag(verb, "--built-in", &words->builtIn, "list the fonts that the player brings along");
  Exclude(chars, {range});
  Exclude(builtIn, {chars, range, out});
  SetFooter(verb,
            "The movie shows the characters taken; without -o it is printed as text. Those of\n"
            "Windows-1252 are taken if neither --chars nor --range is given, and keep their\n"
            "codes; others have their number in Unicode as code.\n\n"
            "Example: vexel font serif.ttf --chars 'Hello!' -o hello.vxf");
  SetRun(verb, [=] { RunFont(*words); });
}

}  // namespace vexel::tools
