// Walking through zero-terminated text, character by character. All of it goes
// through these, so that text of two bytes a character has one place to be
// switched on; here it is off.
#pragma once

#include "zem/zem_types.h"

namespace vexel {

extern bool DBCSEnabled;

// Always false, and clears DBCSEnabled.
bool QKIsDBCSEnabled();
bool QKIsLeadByte(char c);

const char* QKGetNextChar(const char* p);
// Null for a null `p`.
const char* QKGetPrevChar(const char* start, const char* p);
bool QKIsEqual(const char* p, char c);

// The place found, or null. Arguments are not null; the terminator counts as a
// character of the text.
const char* QKFindChar(const char* text, char c);
const char* QKReverseFindChar(const char* text, char c);
const char* QKFindString(const char* text, const char* find);

// As strncmp; null is less than any text, and equal to null.
int QKCompareStrings(const char* a, const char* b, unsigned int count);

// White space of the system's character table.
bool safe_isspace(char c);

// Of a key of a map; characters count as signed. Empty: 0.
UINT32 HashKey(const char* text);

}  // namespace vexel
