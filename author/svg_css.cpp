#include "author/svg_css.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cctype>

#include "author/svg_document.h"
#include "author/svg_values.h"

namespace vexel::author {
namespace {

// More selectors than this make no picture prettier; each is tried on each element.
constexpr size_t kMaxSelectors = 2000;
constexpr size_t kMaxCompounds = 32;

bool IsNameChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || (c & 0x80);
}

std::string TakeName(std::string_view* text) {
  size_t n = 0;
  while (n < text->size() && IsNameChar((*text)[n])) n++;
  std::string name(text->substr(0, n));
  text->remove_prefix(n);
  return name;
}

std::string WithoutComments(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    size_t open = text.find("/*");
    out += text.substr(0, open);
    if (open == std::string_view::npos) break;
    size_t close = text.find("*/", open + 2);
    if (close == std::string_view::npos) break;
    text.remove_prefix(close + 2);
    out += ' ';
  }
  return out;
}

// The first of `stops` outside quotes and parentheses.
size_t FindOutside(std::string_view text, std::string_view stops) {
  char quote = 0;
  int depth = 0;
  for (size_t i = 0; i < text.size(); i++) {
    char c = text[i];
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      depth++;
    } else if (c == ')') {
      if (depth > 0) depth--;
    } else if (depth == 0 && stops.find(c) != std::string_view::npos) {
      return i;
    }
  }
  return std::string_view::npos;
}

bool HasWord(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    size_t end = list.find_first_of(" \t\n\r");
    if (list.substr(0, end) == word) return true;
    if (end == std::string_view::npos) break;
    list.remove_prefix(end + 1);
  }
  return false;
}

}  // namespace

std::vector<CssDeclaration> ParseCssDeclarations(std::string_view text) {
  std::vector<CssDeclaration> out;
  std::string clean;
  if (text.find("/*") != std::string_view::npos) {
    clean = WithoutComments(text);
    text = clean;
  }
  while (!text.empty()) {
    size_t end = FindOutside(text, ";");
    std::string_view item = text.substr(0, end);
    if (size_t colon = item.find(':'); colon != std::string_view::npos) {
      CssDeclaration d;
      for (char c : Trim(item.substr(0, colon)))
        d.property += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      std::string_view value = Trim(item.substr(colon + 1));
      if (size_t mark = value.rfind('!');
          mark != std::string_view::npos && Trim(value.substr(mark + 1)) == "important") {
        d.important = true;
        value = Trim(value.substr(0, mark));
      }
      d.value = value;
      out.push_back(std::move(d));
    }
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return out;
}

bool StyleSheet::ParseSelector(std::string_view text, Selector* out) {
  text = Trim(text);
  char combinator = ' ';
  while (!text.empty()) {
    if (out->compounds.size() == kMaxCompounds) return false;
    Compound c;
    c.combinator = combinator;
    if (text[0] == '*')
      text.remove_prefix(1);
    else
      c.name = TakeName(&text);
    if (!c.name.empty()) out->specificity++;
    while (!text.empty() && (text[0] == '.' || text[0] == '#' || text[0] == '[')) {
      char kind = text[0];
      text.remove_prefix(1);
      if (kind == '[') {
        size_t close = text.find(']');
        if (close == std::string_view::npos) return false;
        std::string_view test = text.substr(0, close);
        text.remove_prefix(close + 1);
        Compound::Test t;
        t.attribute = TakeName(&test);
        t.anyValue = test.empty();
        if (!t.anyValue) {
          if (test[0] != '=') return false;
          test = Trim(test.substr(1));
          if (test.size() >= 2 && (test[0] == '"' || test[0] == '\''))
            test = test.substr(1, test.size() - 2);
          t.value = test;
        }
        c.tests.push_back(std::move(t));
        out->specificity += 100;
        continue;
      }
      std::string name = TakeName(&text);
      if (name.empty()) return false;
      if (kind == '#') {
        c.id = std::move(name);
        out->specificity += 10000;
      } else {
        c.classes.push_back(std::move(name));
        out->specificity += 100;
      }
    }
    out->compounds.push_back(std::move(c));
    std::string_view rest = Trim(text);
    bool gap = rest.size() < text.size();
    text = rest;
    combinator = ' ';
    if (!text.empty() && text[0] == '>') {
      combinator = '>';
      text = Trim(text.substr(1));
      if (text.empty()) return false;
    } else if (!text.empty() && !gap) {
      return false;
    }
  }
  return !out->compounds.empty();
}

void StyleSheet::Add(std::string_view source) {
  std::string clean = WithoutComments(source);
  std::string_view text = clean;
  for (std::string_view mark : {"<!--", "-->"})
    for (size_t at; (at = clean.find(mark)) != std::string::npos;)
      clean.replace(at, mark.size(), mark.size(), ' ');
  while (!(text = Trim(text)).empty()) {
    size_t open = FindOutside(text, "{;");
    if (open == std::string_view::npos) return;
    if (text[open] == ';') {  // @import, @charset: nothing outside the file is read
      text.remove_prefix(open + 1);
      continue;
    }
    std::string_view head = Trim(text.substr(0, open));
    // The body ends at its own brace; rules of media hold rules of their own.
    size_t close = open + 1;
    for (int depth = 1; close < text.size(); close++) {
      if (text[close] == '{') depth++;
      if (text[close] == '}' && --depth == 0) break;
    }
    std::string_view body = text.substr(open + 1, close - open - 1);
    text.remove_prefix(std::min(close + 1, text.size()));
    if (head.empty() || head[0] == '@') continue;
    size_t rule = rules_.size();
    rules_.push_back(ParseCssDeclarations(body));
    while (!head.empty() && selectors_.size() < kMaxSelectors) {
      size_t comma = head.find(',');
      Selector selector;
      selector.rule = rule;
      if (ParseSelector(head.substr(0, comma), &selector))
        selectors_.push_back(std::move(selector));
      if (comma == std::string_view::npos) break;
      head.remove_prefix(comma + 1);
    }
  }
}

bool StyleSheet::Matches(const Compound& c, const xmlNode* element) {
  if (!c.name.empty() && NodeName(element) != c.name) return false;
  if (!c.id.empty() && Attribute(element, "id") != c.id) return false;
  if (!c.classes.empty()) {
    std::string list = Attribute(element, "class");
    for (const std::string& word : c.classes)
      if (!HasWord(list, word)) return false;
  }
  for (const Compound::Test& t : c.tests) {
    if (!HasAttribute(element, t.attribute.c_str())) return false;
    if (!t.anyValue && Attribute(element, t.attribute.c_str()) != t.value) return false;
  }
  return true;
}

bool StyleSheet::Matches(const Selector& selector, const xmlNode* element) {
  // From the right. Taking the nearest ancestor that fits is not always enough to
  // find a match behind a child combinator; such selectors are rare, and the few that
  // need a second try don't match.
  size_t i = selector.compounds.size() - 1;
  if (!Matches(selector.compounds[i], element)) return false;
  while (i > 0) {
    char combinator = selector.compounds[i].combinator;
    const Compound& left = selector.compounds[--i];
    element = element->parent;
    while (element && element->type == XML_ELEMENT_NODE && !Matches(left, element)) {
      if (combinator == '>') return false;
      element = element->parent;
    }
    if (!element || element->type != XML_ELEMENT_NODE) return false;
  }
  return true;
}

std::vector<const CssDeclaration*> StyleSheet::Match(const xmlNode* element) const {
  std::vector<const Selector*> found;
  for (const Selector& s : selectors_)
    if (Matches(s, element)) found.push_back(&s);
  std::stable_sort(found.begin(), found.end(), [](const Selector* a, const Selector* b) {
    return a->specificity < b->specificity;
  });
  std::vector<const CssDeclaration*> out;
  for (const Selector* s : found)
    for (const CssDeclaration& d : rules_[s->rule]) out.push_back(&d);
  return out;
}

}  // namespace vexel::author
