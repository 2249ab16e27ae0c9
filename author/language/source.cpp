// Lines are found once; columns are counted when a mistake is told.
#include "author/language/source.h"

#include <algorithm>

namespace vexel::author {

namespace {

// Of a long line, this many characters are shown before and behind the place.
constexpr size_t kShownBefore = 60;
constexpr size_t kShownBehind = 40;

bool ContinuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

size_t CountCharacters(std::string_view text) {
  size_t count = 0;
  for (char c : text) {
    if (!ContinuesCharacter(c)) ++count;
  }
  return count;
}

// The line as it may go to a terminal, and blanks up to the mark. Both are cut
// to the neighbourhood of the place.
std::string Excerpt(std::string_view line, size_t at) {
  size_t from = at > kShownBefore ? at - kShownBefore : 0;
  size_t to = std::min(line.size(), at + kShownBehind);
  while (from > 0 && ContinuesCharacter(line[from])) --from;
  while (to < line.size() && ContinuesCharacter(line[to])) ++to;
  std::string shown(line.substr(from, to - from));
  for (char& c : shown) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) c = ' ';
  }
  return shown + "\n" + std::string(CountCharacters(line.substr(from, at - from)), ' ') + "^";
}

std::string Message(const SourcePlace& place, const std::string& what) {
  if (!place.source) return what;
  const SourceText& source = *place.source;
  const SourceText::Position position = source.At(place.offset);
  const std::string_view line = source.Line(position.line);
  const auto lineStart = static_cast<size_t>(line.data() - source.text().data());
  const size_t at = std::min(std::min(place.offset, source.text().size()) - lineStart, line.size());
  return source.name() + ":" + std::to_string(position.line) + ":" +
         std::to_string(position.column) + ": " + what + "\n" + Excerpt(line, at);
}

}  // namespace

SourceText::SourceText(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)) {
  lineStarts_.push_back(0);
  for (size_t i = 0; i < text_.size(); ++i) {
    if (text_[i] == '\n') lineStarts_.push_back(i + 1);
  }
}

SourceText::Position SourceText::At(size_t offset) const {
  offset = std::min(offset, text_.size());
  const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  const auto line = static_cast<size_t>(next - lineStarts_.begin());
  const size_t start = lineStarts_[line - 1];
  return {line, CountCharacters(text().substr(start, offset - start)) + 1};
}

std::string_view SourceText::Line(size_t line) const {
  if (line == 0 || line > lineStarts_.size()) return {};
  const size_t start = lineStarts_[line - 1];
  size_t end = line < lineStarts_.size() ? lineStarts_[line] - 1 : text_.size();
  if (end > start && text_[end - 1] == '\r') --end;
  return text().substr(start, end - start);
}

SourceError::SourceError(const SourcePlace& place, const std::string& what)
    : std::runtime_error(Message(place, what)) {}

}  // namespace vexel::author
