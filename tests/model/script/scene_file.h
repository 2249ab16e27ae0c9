// The file of a scene.
#pragma once

#include "scene.h"

namespace vexel::model::script {

Bytes SceneFile(const Scene& scene);

}  // namespace vexel::model::script
