// Action blocks as text: one action a line, in mnemonics.
//
//   loop:
//     push "i"
//     getVariable
//     if loop
//
// A line holds labels ("loop:"), then an action, or a directive:
//
//   push "text"            a text; \n \r \t \" \\ \xHH are understood
//   push 0.5               a number, kept as a 32-bit float
//   push bits 0x7fc00001   a float by its bits, for those without a decimal
//   gotoFrame 4            frames count from 0
//   waitForFrame 4 skip 2  and how many actions are skipped
//   jump loop, if loop     to a label
//   jump by -12            by bytes, for places without a label
//   getURLExpr get target  flags in words, or as 0x41
//   NAME raw 01ff          operand bytes that do not have the action's form
//   NAME ... surplus 00    bytes behind the operands, inside the length
//   action 0xa0 01ff       a code without a name
//   end                    an end byte with more behind it
//   bytes 960100           bytes that are no whole action
//   noend                  last: the block goes without its end byte
//
// Every block gets its end byte unless it closes with end or noend.
#pragma once

#include <span>

#include "author/language/source.h"
#include "author/types.h"

namespace vexel::author {

// The bytes of a block. A mistake throws SourceError.
Bytes AssembleActions(const SourceSlice& slice);

// The text of a block, every line with `indent` blanks before it and a line
// end behind it. Assembling it gives the same bytes again, for any bytes.
std::string DisassembleActions(std::span<const uint8_t> block, int indent);

}  // namespace vexel::author
