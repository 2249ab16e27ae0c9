// Entities of the document itself are put in place (drawing programs name their
// namespaces that way) under the parser's limits on growth; external ones are never
// declared, so that no file name and no address in a picture means anything.
#include "author/svg_document.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

namespace vexel::author {
namespace {

constexpr char kSvgNamespace[] = "http://www.w3.org/2000/svg";
constexpr char kLinkNamespace[] = "http://www.w3.org/1999/xlink";

const xmlChar* Xml(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}
const char* Chars(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

void DeclareInternalEntity(void* context, const xmlChar* name, int type, const xmlChar* publicId,
                           const xmlChar* systemId, xmlChar* content) {
  if (type == XML_INTERNAL_GENERAL_ENTITY)
    xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
}

// Messages come back through the result, not through the library's own channel.
void DropMessage(void*, const char*, ...) {}

std::string Take(xmlChar* text) {
  std::string copy = text ? Chars(text) : "";
  xmlFree(text);
  return copy;
}

std::string ErrorOf(const xmlParserCtxt* context) {
  const xmlError& error = context->lastError;
  std::string text = error.message ? error.message : "not well-formed";
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  for (char& c : text)
    if (c == '\n') c = ' ';
  return "line " + std::to_string(error.line) + ": " + text;
}

}  // namespace

void SvgDocument::FreeDoc::operator()(xmlDoc* doc) const {
  xmlFreeDoc(doc);
}

std::unique_ptr<SvgDocument> SvgDocument::Parse(const uint8_t* data, size_t size,
                                                std::string* error) {
  if (size > static_cast<size_t>(INT32_MAX)) {
    *error = "too large";
    return nullptr;
  }
  std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                       xmlFreeParserCtxt);
  if (!context) {
    *error = "out of memory";
    return nullptr;
  }
  context->sax->entityDecl = DeclareInternalEntity;
  context->sax->warning = DropMessage;
  context->sax->error = DropMessage;
  context->sax->fatalError = DropMessage;
  context->sax->serror = nullptr;
  auto document = std::make_unique<SvgDocument>();
  document->doc_.reset(xmlCtxtReadMemory(
      context.get(), reinterpret_cast<const char*>(data), static_cast<int>(size), nullptr, nullptr,
      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOWARNING | XML_PARSE_NOERROR |
          XML_PARSE_NOCDATA | XML_PARSE_BIG_LINES));
  if (!document->doc_) {
    *error = ErrorOf(context.get());
    return nullptr;
  }
  document->root_ = xmlDocGetRootElement(document->doc_.get());
  if (!document->root_ || !IsNamed(document->root_, "svg")) {
    *error = "not an SVG picture: the root element is not svg";
    return nullptr;
  }
  // A walk without recursion, in document order; the first of equal ids counts.
  const xmlNode* node = document->root_;
  while (node) {
    if (node->type == XML_ELEMENT_NODE) {
      std::string id = Attribute(node, "id");
      if (!id.empty()) document->ids_.try_emplace(std::move(id), node);
      if (node->children) {
        node = node->children;
        continue;
      }
    }
    while (node && node != document->root_ && !node->next) node = node->parent;
    if (!node || node == document->root_) break;
    node = node->next;
  }
  return document;
}

const xmlNode* SvgDocument::Find(std::string_view reference) const {
  if (!reference.empty() && reference[0] == '#') reference.remove_prefix(1);
  auto place = ids_.find(std::string(reference));
  return place == ids_.end() ? nullptr : place->second;
}

bool IsSvgElement(const xmlNode* node) {
  return node && node->type == XML_ELEMENT_NODE &&
         (!node->ns || !node->ns->href || xmlStrEqual(node->ns->href, Xml(kSvgNamespace)));
}

std::string_view NodeName(const xmlNode* node) {
  return node->name ? std::string_view(Chars(node->name)) : std::string_view();
}

bool IsNamed(const xmlNode* node, std::string_view name) {
  return IsSvgElement(node) && NodeName(node) == name;
}

std::string Attribute(const xmlNode* node, const char* name) {
  return Take(xmlGetNoNsProp(const_cast<xmlNode*>(node), Xml(name)));
}

bool HasAttribute(const xmlNode* node, const char* name) {
  return xmlHasNsProp(const_cast<xmlNode*>(node), Xml(name), nullptr) != nullptr;
}

std::string Href(const xmlNode* node) {
  std::string plain = Attribute(node, "href");
  if (!plain.empty()) return plain;
  return Take(xmlGetNsProp(const_cast<xmlNode*>(node), Xml("href"), Xml(kLinkNamespace)));
}

std::string TextOf(const xmlNode* node) {
  return Take(xmlNodeGetContent(const_cast<xmlNode*>(node)));
}

const xmlNode* FirstElement(const xmlNode* parent) {
  const xmlNode* node = parent->children;
  while (node && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

const xmlNode* NextElement(const xmlNode* node) {
  do node = node->next;
  while (node && node->type != XML_ELEMENT_NODE);
  return node;
}

}  // namespace vexel::author
