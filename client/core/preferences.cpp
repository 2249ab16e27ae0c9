#include "client/core/preferences.h"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "client/core/values.h"

namespace vexel::client {

namespace {

constexpr char kGroup[] = "Preferences";
constexpr size_t kMaxKey = 200;

// What the file's form takes as a key without a doubt.
bool IsKey(const std::string& key) {
  const auto plain = [](char c) { return g_ascii_isalnum(c) || c == '-' || c == '_' || c == '.'; };
  return !key.empty() && key.size() <= kMaxKey && std::all_of(key.begin(), key.end(), plain);
}

// Takes a text of GLib's over.
std::string Taken(char* text) {
  const std::string copy = text ? text : "";
  g_free(text);
  return copy;
}

}  // namespace

std::string Preferences::DefaultPath() {
  return Taken(g_build_filename(g_get_user_config_dir(), "vexel", "preferences.ini", nullptr));
}

Preferences::Preferences(std::string path) : path_(std::move(path)) {
  GKeyFile* file = g_key_file_new();
  if (!path_.empty() && g_key_file_load_from_file(file, path_.c_str(), G_KEY_FILE_NONE, nullptr)) {
    char** keys = g_key_file_get_keys(file, kGroup, nullptr, nullptr);
    for (char** key = keys; key && *key; key++) {
      // Escaped, so that any bytes are a value.
      const std::string written = Taken(g_key_file_get_value(file, kGroup, *key, nullptr));
      if (IsKey(*key)) kept_[*key] = Taken(g_strcompress(written.c_str()));
    }
    g_strfreev(keys);
  }
  g_key_file_free(file);
}

std::optional<std::string> Preferences::Get(const std::string& key) const {
  for (const auto* values : {&now_, &kept_}) {
    const auto found = values->find(key);
    if (found != values->end()) return found->second;
  }
  return {};
}

bool Preferences::Set(const std::string& key, const std::string& value) {
  if (!IsKey(key)) return false;
  now_.erase(key);
  kept_[key] = value;
  return Save();
}

bool Preferences::Remove(const std::string& key) {
  return kept_.erase(key) == 0 || Save();
}

std::vector<std::string> Preferences::Keys(const std::string& prefix) const {
  std::vector<std::string> keys;
  for (auto it = kept_.lower_bound(prefix); it != kept_.end() && it->first.starts_with(prefix);
       ++it)
    keys.push_back(it->first);
  return keys;
}

bool Preferences::Save() const {
  if (path_.empty()) return true;
  GKeyFile* file = g_key_file_new();
  for (const auto& [key, value] : kept_) {
    g_key_file_set_value(file, kGroup, key.c_str(),
                         Taken(g_strescape(value.c_str(), nullptr)).c_str());
  }
  const std::string folder = Taken(g_path_get_dirname(path_.c_str()));
  // The user's own: nobody else is to read it.
  const bool saved = g_mkdir_with_parents(folder.c_str(), 0700) == 0 &&
                     g_key_file_save_to_file(file, path_.c_str(), nullptr);
  g_key_file_free(file);
  return saved;
}

INT32 Preferences::ReadPref(const char* key, IZEMBuffer*& value) {
  value = nullptr;
  if (!key) return ZEM_BAD_ARGUMENT;
  const std::optional<std::string> text = Get(key);
  if (!text) return ZEM_FAILED;
  value = NewTextBuffer(*text).Share();
  return ZEM_OK;
}

INT32 Preferences::WritePref(const char* key, IZEMBuffer* value) {
  if (!key || !value || !IsKey(key)) return ZEM_BAD_ARGUMENT;
  return Set(key, TextOf(value)) ? ZEM_OK : ZEM_FAILED;
}

}  // namespace vexel::client
