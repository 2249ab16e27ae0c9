// How much ground an object and its children take, for scripts that ask for a
// sprite's width and height.
#include "geometry/matrix.h"
#include "geometry/rect.h"
#include "movie/character.h"
#include "stage/object.h"

namespace vexel {

void GetBoundingBox(const SObject* object, const MATRIX* m, SRECT* out) {
  MATRIX c;
  MatrixConcat(&object->mat, m, &c);
  RectSetEmpty(out);
  if (object->character) MatrixTransformRect(&c, &object->character->bounds, out);
  for (const SObject* child = object->firstChild; child; child = child->next) {
    SRECT box;
    GetBoundingBox(child, &c, &box);
    RectUnion(out, &box, out);
  }
}

void GetBoundingBox(const SObject* object, SRECT* out) {
  MATRIX identity;
  MatrixIdentity(&identity);
  GetBoundingBox(object, &identity, out);
}

}  // namespace vexel
