// Variables from form-encoded text: what follows the question mark of an
// address, or a whole text that a stream brings in.
#pragma once

#include "movie/fwd.h"

namespace vexel {

// Sets a variable of `thread` for each field of `text`, "name=value&name=value".
// A field without a value gives the empty text, one without a name nothing. A
// name may hold anything here, also a dot or a colon.
void DecodeQueryString(ScriptThread* thread, const char* text);

// The same for what follows the first question mark of `url`, if there is one.
void ExtractVariables(ScriptThread* thread, const char* url);

}  // namespace vexel
