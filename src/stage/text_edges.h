// Static texts as edges.
#pragma once

#include "movie/fwd.h"

namespace vexel {

// Builds the edges and colours of a static text, the object's character.
void BuildTextEdges(SObject* object, const STransform* t);

}  // namespace vexel
