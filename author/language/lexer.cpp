// One pass from left to right; braces are paired with a stack on the way.
#include "author/language/lexer.h"

#include <algorithm>
#include <charconv>

#include "author/script/cursor.h"

namespace vexel::author {

namespace {

// Blocks in blocks; each level costs the reader of the tokens stack.
constexpr size_t kMaxDepth = 100;

class Lexer {
 public:
  explicit Lexer(const SourceText& source) : source_(source), text_(source.text()) {}

  std::vector<Token> Run() {
    for (;;) {
      SkipBlanks();
      if (at_ == text_.size()) break;
      if (tokens_.size() >= kMaxTokens) Fail(at_, "the text is too long: over 8 million words");
      Next();
    }
    if (!open_.empty()) Fail(tokens_[open_.back()].begin, "this { is never closed");
    Token end;
    end.begin = end.end = text_.size();
    tokens_.push_back(std::move(end));
    return std::move(tokens_);
  }

 private:
  [[noreturn]] void Fail(size_t at, const std::string& what) const {
    throw SourceError({&source_, at}, what);
  }

  char Peek(size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }

  // Blanks and comments.
  void SkipBlanks() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
        ++at_;
      } else if (!SkipComment()) {
        return;
      }
    }
  }

  bool SkipComment() {
    if (Peek() != '/') return false;
    if (Peek(1) == '/') {
      at_ = std::min(text_.find('\n', at_), text_.size());
      return true;
    }
    if (Peek(1) == '*') {
      const size_t close = text_.find("*/", at_ + 2);
      if (close == std::string_view::npos) Fail(at_, "this comment is never closed");
      at_ = close + 2;
      return true;
    }
    return false;
  }

  Token& Add(TokenKind kind, size_t begin) {
    Token token;
    token.kind = kind;
    token.begin = begin;
    token.end = at_;
    tokens_.push_back(std::move(token));
    return tokens_.back();
  }

  void Next() {
    const size_t begin = at_;
    const char c = Peek();
    if (IsNameStart(c)) {
      while (IsNameStart(Peek()) || IsDigit(Peek())) ++at_;
      Token& word = Add(TokenKind::kWord, begin);
      word.text = text_.substr(begin, at_ - begin);
      if (HoldsCode(word.text)) Code(begin);
    } else if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) {
      Number();
    } else if (c == '"') {
      Text();
    } else if (c == '#') {
      ColorToken();
    } else {
      Sign();
    }
  }

  void Number() {
    const size_t begin = at_;
    if (Peek() == '0' && (Peek(1) == 'x' || Peek(1) == 'X')) {
      at_ += 2;
      double value = 0;
      size_t digits = 0;
      for (; HexDigit(Peek()) >= 0; ++at_, ++digits) value = value * 16 + HexDigit(Peek());
      if (digits == 0 || digits > 13 || IsNameStart(Peek())) Fail(begin, "0x takes 1 to 13 digits");
      Token& token = Add(TokenKind::kNumber, begin);
      token.number = value;
      token.plainHex = true;
      return;
    }
    while (IsDigit(Peek())) ++at_;
    if (Peek() == '.' && IsDigit(Peek(1))) {
      ++at_;
      while (IsDigit(Peek())) ++at_;
    }
    if (IsNameStart(Peek())) Fail(begin, "a number ends in a letter");
    double value = 0;
    // Without an exponent only a text of over 300 digits is out of range.
    const auto result = std::from_chars(text_.data() + begin, text_.data() + at_, value);
    if (result.ec != std::errc()) Fail(begin, "this number is too large or too small");
    Add(TokenKind::kNumber, begin).number = value;
  }

  void Text() {
    const size_t begin = at_;
    std::string bytes;
    for (;;) {
      ++at_;
      for (;;) {
        if (at_ == text_.size() || Peek() == '\n') Fail(begin, "this text is never closed");
        const char c = text_[at_++];
        if (c == '"') break;
        bytes += c == '\\' ? Escape() : c;
      }
      const size_t end = at_;
      SkipBlanks();
      if (Peek() != '"') {
        at_ = end;
        break;
      }
    }
    Add(TokenKind::kText, begin).text = std::move(bytes);
  }

  char Escape() {
    const size_t begin = at_ - 1;
    const char c = Peek();
    ++at_;
    switch (c) {
      case 'n':
        return '\n';
      case 'r':
        return '\r';
      case 't':
        return '\t';
      case '"':
      case '\\':
        return c;
      case 'x': {
        const int high = HexDigit(Peek());
        const int low = HexDigit(Peek(1));
        if (high < 0 || low < 0) Fail(begin, "\\x takes two hexadecimal digits");
        at_ += 2;
        return static_cast<char>(high * 16 + low);
      }
      default:
        Fail(begin, "a text knows \\n \\r \\t \\\" \\\\ and \\xHH");
    }
  }

  void ColorToken() {
    const size_t begin = at_++;
    uint32_t value = 0;
    size_t digits = 0;
    for (; HexDigit(Peek()) >= 0 && digits < 9; ++at_, ++digits)
      value = value << 4 | static_cast<uint32_t>(HexDigit(Peek()));
    if ((digits != 3 && digits != 4 && digits != 6 && digits != 8) || IsNameStart(Peek()))
      Fail(begin, "a colour is #rgb, #rgba, #rrggbb or #rrggbbaa");
    const size_t channels = digits < 6 ? digits : digits / 2;
    const auto channel = [&](size_t index) {
      if (index >= channels) return uint8_t{255};
      if (digits < 6) return static_cast<uint8_t>((value >> 4 * (channels - 1 - index) & 15) * 17);
      return static_cast<uint8_t>(value >> 8 * (channels - 1 - index));
    };
    Add(TokenKind::kColor, begin).color = {channel(0), channel(1), channel(2), channel(3)};
  }

  void Sign() {
    const size_t begin = at_;
    const char c = text_[at_++];
    static constexpr std::string_view kSigns = "{}(),+-*/=<>!%";
    if (kSigns.find(c) == std::string_view::npos) {
      Fail(begin, static_cast<unsigned char>(c) < 0x21 || static_cast<unsigned char>(c) > 0x7E
                      ? "this byte stands for nothing here"
                      : "the sign '" + std::string(1, c) + "' stands for nothing here");
    }
    if ((c == '=' || c == '<' || c == '>' || c == '!') && Peek() == '=') ++at_;
    Token& sign = Add(TokenKind::kSign, begin);
    sign.text = text_.substr(begin, at_ - begin);
    if (c == '{') {
      if (open_.size() >= kMaxDepth) Fail(begin, "more than 100 blocks in each other");
      open_.push_back(tokens_.size() - 1);
    } else if (c == '}') {
      if (open_.empty()) Fail(begin, "this } closes nothing");
      tokens_[open_.back()].partner = tokens_.size() - 1;
      open_.pop_back();
    }
  }

  // The inside of the braces that follow, if any do, as a token.
  void Code(size_t word) {
    SkipBlanks();
    if (Peek() != '{') Fail(word, "this word takes a block in braces");
    const size_t brace = at_++;
    const size_t begin = at_;
    for (size_t depth = 1;;) {
      if (at_ >= text_.size()) Fail(brace, "this { is never closed");
      const char c = text_[at_];
      if (SkipComment()) continue;
      if (c == '"') {
        SkipQuoted();
        continue;
      }
      ++at_;
      if (c == '{') ++depth;
      if (c == '}' && --depth == 0) break;
    }
    Add(TokenKind::kCode, begin).end = at_ - 1;
  }

  void SkipQuoted() {
    const size_t begin = at_++;
    for (;; ++at_) {
      if (at_ >= text_.size() || Peek() == '\n') Fail(begin, "this text is never closed");
      if (Peek() == '\\' && at_ + 1 < text_.size()) {
        ++at_;
      } else if (Peek() == '"') {
        ++at_;
        return;
      }
    }
  }

  const SourceText& source_;
  std::string_view text_;
  size_t at_ = 0;
  std::vector<Token> tokens_;
  std::vector<size_t> open_;  // braces, as indexes of tokens
};

}  // namespace

std::vector<Token> Tokenize(const SourceText& source) {
  return Lexer(source).Run();
}

bool HoldsCode(std::string_view word) {
  return word == "actions" || word == "script";
}

}  // namespace vexel::author
