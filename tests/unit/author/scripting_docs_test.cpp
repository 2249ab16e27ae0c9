// The examples of docs/scripting.md, each compiled as it stands there.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "author/script/action_text.h"
#include "author/script/action_walk.h"
#include "author/script/script.h"

namespace vexel::author {
namespace {

std::string Document() {
  std::ifstream file(VEXEL_DOCS "/scripting.md");
  return {std::istreambuf_iterator<char>(file), {}};
}

// The blocks of one language between ``` lines.
std::vector<std::string> Examples(const std::string& language) {
  const std::string document = Document();
  const std::string fence = "```" + language + "\n";
  std::vector<std::string> examples;
  for (size_t at = document.find(fence); at != std::string::npos; at = document.find(fence, at)) {
    at += fence.size();
    const size_t end = document.find("```", at);
    examples.push_back(document.substr(at, end - at));
    at = end;
  }
  return examples;
}

TEST(ScriptingDocs, EveryScriptCompiles) {
  const std::vector<std::string> examples = Examples("script");
  EXPECT_GE(examples.size(), 15u);
  for (const std::string& example : examples) {
    const SourceText source("docs/scripting.md", example);
    try {
      CompileScript(WholeSource(source));
    } catch (const SourceError& error) {
      ADD_FAILURE() << error.what();
    }
  }
}

TEST(ScriptingDocs, ActionsAssembleAndNameEveryAction) {
  std::set<int> codes;
  for (const std::string& example : Examples("actions")) {
    const SourceText source("docs/scripting.md", example);
    const Bytes block = AssembleActions(WholeSource(source));
    for (size_t at = 0; at < block.size();) {
      const std::optional<ActionView> action = ReadAction(block, at);
      ASSERT_TRUE(action);
      codes.insert(action->code);
      at = action->end;
    }
  }
  for (const ActionInfo& info : kActionInfos) EXPECT_TRUE(codes.count(info.code)) << info.name;
}

}  // namespace
}  // namespace vexel::author
