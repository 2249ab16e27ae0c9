// The reference of the movie language, printed from its table.
#pragma once

#include <string>

namespace vexel::author {

// docs/text-form.md, as Markdown.
std::string LanguageReference();

}  // namespace vexel::author
