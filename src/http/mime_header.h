// A header of a message: a name and values, each of which is a list of
// parameters. "X: a;b=c, d" has two values, of the parameters a, b = c, and d.
#pragma once

#include "base/cqk_string.h"
#include "base/simple_list.h"

namespace vexel {

class MIMEParameter {
 public:
  explicit MIMEParameter(const CQKString& attribute, const CQKString& value = CQKString())
      : m_attribute(attribute), m_value(value) {}

  const CQKString& attribute() const { return m_attribute; }
  const CQKString& value() const { return m_value; }
  // Appends "attribute=value", or the attribute alone if the value is empty.
  void asString(CQKString& out) const;

 private:
  CQKString m_attribute;
  CQKString m_value;
};

// Owns its parameters.
class MIMEHeaderValue : public CQKSimpleList {
 public:
  MIMEHeaderValue() : m_cursor(nullptr) {}
  explicit MIMEHeaderValue(const CQKString& attribute, const CQKString& value = CQKString());
  ~MIMEHeaderValue() override;
  // Sets `out` to the parameters, joined with ";".
  virtual void asString(CQKString& out) const;

  // Without memory the parameter is dropped; a given one is deleted then.
  void addParameter(const CQKString& attribute, const CQKString& value = CQKString());
  void addParameter(MIMEParameter* parameter);
  // The first parameter of this name, whatever the case, or null; its value, or
  // an empty text.
  MIMEParameter* getParameter(const char* attribute) const;
  CQKString getParameterValue(const char* attribute) const;
  // Null behind the last.
  MIMEParameter* getFirstParameter();
  MIMEParameter* getNextParameter();
  void clearParameterList();
  // The text that asString gives.
  CQKString value() const;

 private:
  void* m_cursor;
};

// Owns its values.
class MIMEHeader {
 public:
  // Adds to the header the values of a line.
  using SplitLine = void (*)(const CQKString& line, MIMEHeader* header);

  explicit MIMEHeader(const CQKString& name) : m_name(name), m_split(nullptr), m_cursor(nullptr) {}
  // Most headers of a message are never looked at, so the line "name: values" is
  // taken apart when somebody first asks for its name, or for the values.
  MIMEHeader(const CQKString& line, SplitLine split)
      : m_line(line), m_split(split), m_cursor(nullptr) {}
  virtual ~MIMEHeader();
  // Appends the values, joined with ",", and a line end.
  virtual void asString(CQKString& out);
  MIMEHeader(const MIMEHeader&) = delete;
  MIMEHeader& operator=(const MIMEHeader&) = delete;

  const CQKString& name();
  // Takes `value` over; null is nothing. Without memory it is dropped.
  void addHeaderValue(MIMEHeaderValue* value);
  void addHeaderValue(const CQKString& text);
  // The first value of this text, whatever the case, or null.
  MIMEHeaderValue* getHeaderValue(const char* text);
  // Null behind the last.
  MIMEHeaderValue* getFirstHeaderValue();
  MIMEHeaderValue* getNextHeaderValue();
  void clearHeaderValueList();

 private:
  void Split();

  CQKString m_name;   // empty: still in the line
  CQKString m_line;   // until both name and values have been taken from it
  SplitLine m_split;  // null: there are no values to take
  CQKSimpleList m_values;
  void* m_cursor;
};

}  // namespace vexel
