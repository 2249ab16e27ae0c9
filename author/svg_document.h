// An SVG file as a tree: libxml2's, loaded so that nothing but the given bytes is
// ever read, with lookups by id.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

// libxml2's own names, so that only its users include its headers.
struct _xmlDoc;
struct _xmlNode;
using xmlNode = _xmlNode;

namespace vexel::author {

class SvgDocument {
 public:
  // Null, and `error` says line and cause, if the bytes are no well-formed XML whose
  // root is an svg element.
  static std::unique_ptr<SvgDocument> Parse(const uint8_t* data, size_t size, std::string* error);

  const xmlNode* root() const { return root_; }
  // The element with an id, or null. Accepts "#id" and "id".
  const xmlNode* Find(std::string_view reference) const;

 private:
  struct FreeDoc {
    void operator()(_xmlDoc* doc) const;
  };
  std::unique_ptr<_xmlDoc, FreeDoc> doc_;
  const xmlNode* root_ = nullptr;
  std::unordered_map<std::string, const xmlNode*> ids_;
};

// Whether a node is an element that viewers take for SVG: of its namespace, or of none.
bool IsSvgElement(const xmlNode* node);
std::string_view NodeName(const xmlNode* node);
bool IsNamed(const xmlNode* node, std::string_view name);

// The value of an attribute without namespace; empty if it is absent.
std::string Attribute(const xmlNode* node, const char* name);
bool HasAttribute(const xmlNode* node, const char* name);
// href, with or without the namespace of links.
std::string Href(const xmlNode* node);
// All text below a node.
std::string TextOf(const xmlNode* node);

const xmlNode* FirstElement(const xmlNode* parent);
const xmlNode* NextElement(const xmlNode* node);

}  // namespace vexel::author
