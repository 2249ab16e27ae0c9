// Scripts: behaviour in statements and expressions, compiled to actions.
//
//   total = price * count;
//   if (total > 10) { gotoAndStop("cheap") } else { /sign.alpha = 50 }
//
// The language is described in docs/scripting.md.
#pragma once

#include "author/language/source.h"
#include "author/types.h"

namespace vexel::author {

// The action block of a script, with its end byte. A mistake throws
// SourceError.
Bytes CompileScript(const SourceSlice& slice);

}  // namespace vexel::author
