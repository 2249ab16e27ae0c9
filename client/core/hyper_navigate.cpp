#include "client/core/hyper_navigate.h"

#include <glib.h>

#include <utility>
#include <vector>

namespace vexel::client {

namespace {

constexpr const char* kSchemes[] = {"http", "https", "mailto", "ftp"};

}  // namespace

bool MayOpen(const std::string& url) {
  for (const char* scheme : kSchemes) {
    const std::string prefix = std::string(scheme) + ":";
    if (g_ascii_strncasecmp(url.c_str(), prefix.c_str(), prefix.size()) == 0) return true;
  }
  return false;
}

bool RunForURL(const std::string& command, const std::string& url) {
  if (!MayOpen(url)) return false;
  int count = 0;
  char** words = nullptr;
  if (!g_shell_parse_argv(command.c_str(), &count, &words, nullptr)) return false;
  std::vector<std::string> texts(words, words + count);
  g_strfreev(words);
  bool placed = false;
  for (std::string& text : texts) {
    for (size_t at = 0; (at = text.find("%u", at)) != std::string::npos; at += url.size()) {
      text.replace(at, 2, url);
      placed = true;
    }
  }
  if (!placed) texts.push_back(url);
  std::vector<char*> argv;
  for (std::string& text : texts) argv.push_back(text.data());
  argv.push_back(nullptr);
  const int flags = G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL;
  return g_spawn_async(nullptr, argv.data(), nullptr, static_cast<GSpawnFlags>(flags), nullptr,
                       nullptr, nullptr, nullptr);
}

HyperNavigate::HyperNavigate(std::string command)
    : opener_([command = std::move(command)](const std::string& url, const std::string&) {
        return RunForURL(command, url);
      }) {}

HyperNavigate::HyperNavigate(Opener opener) : opener_(std::move(opener)) {}

INT32 HyperNavigate::GoToURL(const char* url, const char* target) {
  if (!url) return ZEM_BAD_ARGUMENT;
  return opener_(url, target ? target : "") ? ZEM_OK : ZEM_FAILED;
}

}  // namespace vexel::client
