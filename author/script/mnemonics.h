// The words of the action language's mnemonic form.
//
// A mnemonic is the action's name with a small first letter: nextFrame, push,
// getURLExpr. They come from the one list of actions.
#pragma once

#include <string>
#include <string_view>

#include "movie/actions.h"

namespace vexel::author {

std::string Mnemonic(const ActionInfo& info);
// Null for a word that is no mnemonic.
const ActionInfo* FindMnemonic(std::string_view word);

// Bits of ActionGetURLExpr's flags.
enum UrlFlags : uint8_t {
  kUrlGet = 0x01,        // variables go along in the address
  kUrlPost = 0x02,       // or behind it
  kUrlTarget = 0x40,     // the window is the path of a timeline to load into
  kUrlVariables = 0x80,  // what comes is variables, not a movie
};

// A flags byte in words, separated by blanks: "get target", "none", "play",
// "stop"; what has no word is "0x12".
std::string FlagsText(const ActionInfo& info, uint8_t flags);
// The bits of one such word; -1 for an unknown one.
int FindFlag(const ActionInfo& info, std::string_view word);
// All flag words of an action, for messages.
std::string FlagWords(const ActionInfo& info);

}  // namespace vexel::author
