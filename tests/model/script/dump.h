// All that scripts can see or change, as text of many lines.
#pragma once

#include <string>

#include "player.h"
#include "support/test_player.h"

namespace vexel::model::script {

// Takes and forgets the calls so far.
std::string Dump(test::TestPlayer& player);
std::string Dump(Player& player);

}  // namespace vexel::model::script
