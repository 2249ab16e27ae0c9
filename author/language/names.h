// The names and ids of characters. Names are told apart by all; an id has at
// most one name, and may be defined any number of times without one.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vexel::author {

class CharacterBook {
 public:
  // By name; -1 if there is none.
  int32_t Find(const std::string& name) const;
  // Null for an id without a name.
  const std::string* NameOf(uint16_t id) const;
  // The id that comes next by itself; 0 when none is left.
  uint16_t Next() const;
  uint32_t highest() const { return highest_; }

  void Define(const std::string& name, uint16_t id);
  // An id that is in use, with or without a name.
  void Use(uint32_t id);

  // Since a mark everything can be taken back.
  struct Mark {
    size_t defined;
    uint32_t highest;
  };
  Mark Now() const { return {log_.size(), highest_}; }
  void GoBack(const Mark& mark);

  const std::map<std::string, uint16_t>& all() const { return ids_; }

 private:
  std::map<std::string, uint16_t> ids_;
  std::map<uint16_t, std::string> names_;
  std::vector<std::string> log_;  // names in the order they came
  uint32_t highest_ = 0;
};

}  // namespace vexel::author
