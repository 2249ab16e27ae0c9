// The verbs of the command. Each adds itself, with its options, to the command
// line; the one that was named then runs. It throws Failure when it fails.
#pragma once

// Its header is large.
namespace CLI {
class App;
}

namespace vexel::tools {

void AddInfoVerb(CLI::App* app);
void AddCheckVerb(CLI::App* app);
void AddRenderVerb(CLI::App* app);
void AddThumbnailVerb(CLI::App* app);
void AddImportVerb(CLI::App* app);
void AddFontVerb(CLI::App* app);
void AddDumpVerb(CLI::App* app);
void AddMakeVerb(CLI::App* app);
void AddWatchVerb(CLI::App* app);
void AddRunVerb(CLI::App* app);
void AddStreamVerb(CLI::App* app);
void AddPlayVerb(CLI::App* app);
void AddBenchVerb(CLI::App* app);

}  // namespace vexel::tools
