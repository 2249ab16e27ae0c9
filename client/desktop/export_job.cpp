// The movie of a server goes to the child as a file in memory, which is gone
// with the last of the two, however they end.
#include "client/desktop/export_job.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <utility>

#include "client/desktop/movie_name.h"
#include "tools/installation.h"

namespace vexel::client {

namespace {

constexpr int kMovieFd = 3;  // the child's
constexpr char kMoviePath[] = "/dev/fd/3";
constexpr char kToldBy[] = "vexel: ";

// What the command calls otherwise than the window does.
struct WordRow {
  const char* commands;
  const char* windows;
};

constexpr WordRow kWords[] = {
    {"render: ", ""},
    {"--fps: ", "frames a second: "},
    {"between --from and --to", "between these times"},
};

// A file that holds the bytes and has no name; -1 if there is no memory for it.
int InMemory(const std::vector<uint8_t>& bytes) {
  const int file = memfd_create("movie", MFD_CLOEXEC);
  size_t done = 0;
  while (file >= 0 && done < bytes.size()) {
    const ssize_t count = write(file, bytes.data() + done, bytes.size() - done);
    if (count <= 0) {
      close(file);
      return -1;
    }
    done += static_cast<size_t>(count);
  }
  return file;
}

void Replace(std::string* text, const std::string& what, const std::string& by) {
  const size_t at = what.empty() ? std::string::npos : text->find(what);
  if (at != std::string::npos) text->replace(at, what.size(), by);
}

bool WasCancelled(GError* error) {
  const bool cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
  g_clear_error(&error);
  return cancelled;
}

}  // namespace

ExportJob::ExportJob(EventLoop* loop, const ExportedMovie& movie, const ExportWishes& wishes,
                     Events events)
    : events_(std::move(events)),
      ended_(g_cancellable_new()),
      movie_(movie.path.empty() ? kMoviePath : movie.path),
      out_(wishes.out),
      name_(movie.name),
      twice_(wishes.out.ends_with(".gif")) {
  child_ = Start(movie, wishes);
  if (child_) {
    lines_ = g_data_input_stream_new(g_subprocess_get_stderr_pipe(child_));
    ReadLine();
  } else {
    soon_ = loop->Soon([this] { End(problem_); });
  }
}

ExportJob::~ExportJob() {
  g_cancellable_cancel(ended_);
  // It takes its unfinished file with it.
  if (child_) g_subprocess_send_signal(child_, SIGTERM);
  g_clear_object(&lines_);
  g_clear_object(&child_);
  g_object_unref(ended_);
}

GSubprocess* ExportJob::Start(const ExportedMovie& movie, const ExportWishes& wishes) {
  std::vector<std::string> words = {
      tools::ProgramPath("vexel"), "render", movie_, "-o", out_, "--progress"};
  if (!wishes.framesPerSecond.empty()) words.push_back("--fps=" + wishes.framesPerSecond);
  if (wishes.fromMs > 0) words.push_back("--from=" + std::to_string(wishes.fromMs));
  if (wishes.toMs > 0) words.push_back("--to=" + std::to_string(wishes.toMs));
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  arguments.push_back(nullptr);

  GSubprocessLauncher* launcher = g_subprocess_launcher_new(static_cast<GSubprocessFlags>(
      G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_PIPE));
  g_subprocess_launcher_set_child_setup(
      launcher, [](gpointer) { prctl(PR_SET_PDEATHSIG, SIGTERM); }, nullptr, nullptr);
  const int file = movie.path.empty() ? InMemory(movie.bytes) : -1;
  if (file >= 0) g_subprocess_launcher_take_fd(launcher, file, kMovieFd);
  GError* error = nullptr;
  GSubprocess* child = g_subprocess_launcher_spawnv(launcher, arguments.data(), &error);
  g_object_unref(launcher);
  if (!child) problem_ = error->message;
  g_clear_error(&error);
  return child;
}

void ExportJob::ReadLine() {
  g_data_input_stream_read_line_async(
      lines_, G_PRIORITY_DEFAULT, ended_,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        gsize size = 0;
        char* text = g_data_input_stream_read_line_finish(G_DATA_INPUT_STREAM(source), result,
                                                          &size, &error);
        // Then there is no job any more.
        if (WasCancelled(error)) return;
        auto* self = static_cast<ExportJob*>(data);
        if (!text) return self->Wait();
        const std::string line(text, size);
        g_free(text);
        self->Take(line);
        self->ReadLine();
      },
      this);
}

void ExportJob::Take(const std::string& line) {
  long long frame = 0, count = 0;
  const bool colours =
      std::sscanf(line.c_str(), "colours of frame %lld of %lld", &frame, &count) == 2;
  if (!colours && std::sscanf(line.c_str(), "frame %lld of %lld", &frame, &count) != 2) {
    problem_ = line;
    return;
  }
  double done = static_cast<double>(frame - 1) / static_cast<double>(count);
  if (twice_) done = done / 2 + (colours ? 0 : 0.5);
  events_.onProgress(done);
}

void ExportJob::Wait() {
  g_subprocess_wait_async(
      child_, ended_,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        g_subprocess_wait_finish(G_SUBPROCESS(source), result, &error);
        if (WasCancelled(error)) return;
        auto* self = static_cast<ExportJob*>(data);
        const bool good = g_subprocess_get_successful(self->child_);
        if (!good && self->problem_.empty()) self->problem_ = "the work was ended from outside";
        self->End(good ? "" : self->problem_);
      },
      this);
}

void ExportJob::End(const std::string& problem) {
  std::string text = problem;
  if (text.starts_with(kToldBy)) text.erase(0, sizeof kToldBy - 1);
  for (const WordRow& row : kWords) Replace(&text, row.commands, row.windows);
  Replace(&text, out_, NameOf(out_));
  Replace(&text, movie_, name_);
  events_.onEnd(text);
}

}  // namespace vexel::client
