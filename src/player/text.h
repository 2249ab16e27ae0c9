// Texts and the clock of the movie and player layers. Texts are NUL-terminated
// byte strings; null is allowed wherever a text is taken. This header includes
// nothing of ours, so every folder of the ring uses it.
#pragma once

#include <cstdint>

namespace vexel {

// A new copy, released with FreeStr; null for null or when memory is out.
char* CreateStr(const char* text);
// A copy of the first `n` bytes and a NUL.
char* CreateStr(const char* text, int32_t n);
void FreeStr(char* text);

// Equal without regard to the case of ASCII letters; false if either is null.
bool StrEqual(const char* a, const char* b);

// What follows `prefix` in `text`, or null if `text` starts otherwise; the case
// of ASCII letters is ignored.
const char* StripPrefix(const char* text, const char* prefix);

// The decimal digits at the start, stopping at the first other character; 0
// if there is none. Saturates at 0x7FFFFFFF.
int32_t ToInt(const char* text);

// The millisecond tick. The embedder owns the clock: a plug-in asks its client,
// a tool or a test keeps a virtual one. Until a clock is set the tick is 0.
using TickClock = uint32_t (*)();
void SetTickClock(TickClock clock);
uint32_t GetTime();

}  // namespace vexel
