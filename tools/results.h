// What a script prints: plain lines, or the same as JSON, one object a line.
// In JSON a character of a text is the byte of that number, so any text of a
// movie can be read back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform_call.h"
#include "stage/display_list.h"

namespace vexel::tools {

class Results : public PlatformListener {
 public:
  explicit Results(bool json) : json_(json) {}

  // Texts are bytes as they are; nothing stands for what is not there.
  void Key(bool wanted) const;
  void Paste(bool taken) const;
  void Variable(const std::string& name, const std::optional<std::string>& value) const;
  void Property(const std::string& path, int32_t index,
                const std::optional<std::string>& value) const;
  // Null for no timeline.
  void Frame(const std::string& path, const ScriptThread* thread) const;
  // Null for nothing hit.
  void Hit(const SObject* object) const;
  void Tree(const DisplayList& display) const;
  void Dirty(const std::vector<SRECT>& rects) const;

  // What scripts ask of a browser and of a clock, and what is copied; calls of the screen are
  // passed over.
  void OnCall(const PlatformCall& call) override;

 private:
  bool json_;
};

}  // namespace vexel::tools
