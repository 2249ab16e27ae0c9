// What the user set, in a file of the user's configuration folder.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class Preferences : public Object<IZEMPreferences> {
 public:
  // Reads the file, if there is one.
  explicit Preferences(std::string path);
  // "vexel/preferences.ini" in the user's configuration folder.
  static std::string DefaultPath();

  INT32 ReadPref(const char* key, IZEMBuffer*& value) override;
  // Writes the file at once. ZEM_FAILED if it can't be written; the value then
  // holds for this process only.
  INT32 WritePref(const char* key, IZEMBuffer* value) override;

  std::optional<std::string> Get(const std::string& key) const;
  bool Set(const std::string& key, const std::string& value);
  // Of what the file keeps.
  bool Remove(const std::string& key);
  // In their order, the keys in the file that begin so.
  std::vector<std::string> Keys(const std::string& prefix) const;
  // For this process only.
  void SetForNow(const std::string& key, const std::string& value) { now_[key] = value; }

 private:
  bool Save() const;

  std::string path_;  // empty: nothing is written
  std::map<std::string, std::string> kept_;
  std::map<std::string, std::string> now_;
};

}  // namespace vexel::client
