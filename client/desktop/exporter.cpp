#include "client/desktop/exporter.h"

#include <filesystem>
#include <utility>

#include "client/desktop/export_dialog.h"
#include "client/desktop/folder.h"
#include "client/desktop/movie_name.h"

namespace vexel::client {

void Exporter::Run(const ExportedMovie& movie, uint32_t length) {
  if (job_) return messages_->TellProblem("A film is being exported; another one has to wait.");
  const std::string stem = std::filesystem::path(movie.name).stem().string();
  const auto wishes = AskForExport(window_, stem, length);
  if (!wishes) return;
  messages_->ShowWork("Exporting " + NameOf(wishes->out), [this] { job_ = nullptr; });
  job_ = std::make_unique<ExportJob>(
      loop_, movie, *wishes,
      ExportJob::Events{
          .onProgress = [this](double done) { messages_->SetDone(done); },
          .onEnd = [this, out = wishes->out](const std::string& problem) { End(out, problem); }});
}

void Exporter::End(const std::string& out, const std::string& problem) {
  // Its own words and the caller's go with the job.
  const std::string path = out, text = problem;
  job_ = nullptr;
  messages_->EndWork();
  if (!text.empty()) return messages_->TellProblem("The film was not saved: " + text);
  messages_->TellSuccess("Saved " + NameOf(path), "_Show in folder",
                         [path] { ShowInFolder(path); });
}

}  // namespace vexel::client
