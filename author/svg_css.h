// Style sheets inside pictures: the part of CSS that drawing programs write.
// Selectors by name, class, id and attribute, with descendant and child combinators;
// what is beyond that is left out whole, rule by rule.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "author/svg_document.h"

namespace vexel::author {

struct CssDeclaration {
  std::string property;  // lower case
  std::string value;
  bool important = false;
};

// The declarations of a style attribute or of a rule's body.
std::vector<CssDeclaration> ParseCssDeclarations(std::string_view text);

class StyleSheet {
 public:
  // Appends the rules of a sheet.
  void Add(std::string_view text);
  // The declarations that apply to an element, weakest first. The pointers are valid
  // until the next Add.
  std::vector<const CssDeclaration*> Match(const xmlNode* element) const;

 private:
  struct Compound {
    char combinator = ' ';  // to what stands on its left: ' ' or '>'
    std::string name;       // empty: any
    std::string id;
    std::vector<std::string> classes;
    struct Test {
      std::string attribute, value;
      bool anyValue;
    };
    std::vector<Test> tests;
  };
  struct Selector {
    std::vector<Compound> compounds;  // in reading order
    int specificity = 0;
    size_t rule = 0;
  };

  static bool ParseSelector(std::string_view text, Selector* out);
  static bool Matches(const Compound& compound, const xmlNode* element);
  static bool Matches(const Selector& selector, const xmlNode* element);

  std::vector<Selector> selectors_;
  std::vector<std::vector<CssDeclaration>> rules_;
};

}  // namespace vexel::author
