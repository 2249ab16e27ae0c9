#include "author/script/mnemonics.h"

#include <cstdio>
#include <map>
#include <span>

namespace vexel::author {

namespace {

struct FlagWord {
  uint8_t bits;
  const char* word;
};

constexpr FlagWord kUrlWords[] = {
    {kUrlGet, "get"}, {kUrlPost, "post"}, {kUrlTarget, "target"}, {kUrlVariables, "variables"},
    {0, "none"},
};
constexpr FlagWord kGotoWords[] = {
    {1, "play"},
    {0, "stop"},
};

std::span<const FlagWord> WordsOf(const ActionInfo& info) {
  if (info.code == kActionGotoExpr) return kGotoWords;
  return kUrlWords;
}

}  // namespace

std::string Mnemonic(const ActionInfo& info) {
  std::string word = info.name + sizeof("Action") - 1;
  word[0] = static_cast<char>(word[0] - 'A' + 'a');
  return word;
}

const ActionInfo* FindMnemonic(std::string_view word) {
  static const auto* const words = [] {
    auto* made = new std::map<std::string, const ActionInfo*, std::less<>>;
    for (const ActionInfo& info : kActionInfos) made->emplace(Mnemonic(info), &info);
    return made;
  }();
  const auto found = words->find(word);
  return found == words->end() ? nullptr : found->second;
}

std::string FlagsText(const ActionInfo& info, uint8_t flags) {
  std::string text;
  uint8_t rest = flags;
  for (const FlagWord& flag : WordsOf(info)) {
    const bool holds = flag.bits ? (rest & flag.bits) != 0 : flags == 0;
    if (!holds) continue;
    rest = static_cast<uint8_t>(rest & ~flag.bits);
    if (!text.empty()) text += ' ';
    text += flag.word;
  }
  if (rest != 0) {
    char number[8];
    std::snprintf(number, sizeof(number), "0x%02x", rest);
    if (!text.empty()) text += ' ';
    text += number;
  }
  return text;
}

int FindFlag(const ActionInfo& info, std::string_view word) {
  for (const FlagWord& flag : WordsOf(info)) {
    if (word == flag.word) return flag.bits;
  }
  return -1;
}

std::string FlagWords(const ActionInfo& info) {
  std::string words;
  for (const FlagWord& flag : WordsOf(info)) {
    if (!words.empty()) words += ", ";
    words += flag.word;
  }
  return words;
}

}  // namespace vexel::author
