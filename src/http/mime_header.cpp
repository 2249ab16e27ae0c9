#include "http/mime_header.h"

#include <strings.h>

#include <new>

#include "http/mime_scanner.h"

namespace vexel {

void MIMEParameter::asString(CQKString& out) const {
  out += m_attribute;
  if (m_value.IsEmpty()) return;
  out += '=';
  out += m_value;
}

MIMEHeaderValue::MIMEHeaderValue(const CQKString& attribute, const CQKString& value)
    : m_cursor(nullptr) {
  addParameter(attribute, value);
}

MIMEHeaderValue::~MIMEHeaderValue() {
  clearParameterList();
}

void MIMEHeaderValue::asString(CQKString& out) const {
  out.Empty();
  for (void* at = Begin(); at;) {
    if (at != Begin()) out += ';';
    static_cast<MIMEParameter*>(GetNext(at))->asString(out);
  }
}

void MIMEHeaderValue::addParameter(const CQKString& attribute, const CQKString& value) {
  addParameter(new (std::nothrow) MIMEParameter(attribute, value));
}

void MIMEHeaderValue::addParameter(MIMEParameter* parameter) {
  if (parameter && !AddTail(parameter)) delete parameter;
}

MIMEParameter* MIMEHeaderValue::getParameter(const char* attribute) const {
  for (void* at = Begin(); at;) {
    MIMEParameter* parameter = static_cast<MIMEParameter*>(GetNext(at));
    if (strcasecmp(parameter->attribute(), attribute) == 0) return parameter;
  }
  return nullptr;
}

CQKString MIMEHeaderValue::getParameterValue(const char* attribute) const {
  MIMEParameter* parameter = getParameter(attribute);
  return parameter ? parameter->value() : CQKString();
}

MIMEParameter* MIMEHeaderValue::getFirstParameter() {
  m_cursor = Begin();
  return getNextParameter();
}

MIMEParameter* MIMEHeaderValue::getNextParameter() {
  return static_cast<MIMEParameter*>(GetNext(m_cursor));
}

void MIMEHeaderValue::clearParameterList() {
  m_cursor = nullptr;
  while (!IsEmpty()) delete static_cast<MIMEParameter*>(RemoveHead());
}

CQKString MIMEHeaderValue::value() const {
  CQKString text;
  asString(text);
  return text;
}

MIMEHeader::~MIMEHeader() {
  clearHeaderValueList();
}

const CQKString& MIMEHeader::name() {
  if (m_name.IsEmpty() && !m_line.IsEmpty()) {
    MIMEInputStream stream(m_line);
    m_name = MIMEScanner(stream).nextToken(":").text;
  }
  return m_name;
}

void MIMEHeader::Split() {
  if (!m_split) return;
  name();
  SplitLine split = m_split;
  m_split = nullptr;
  split(m_line, this);
  m_line.Empty();
}

void MIMEHeader::asString(CQKString& out) {
  Split();
  for (void* at = m_values.Begin(); at;) {
    if (at != m_values.Begin()) out += ',';
    out += static_cast<MIMEHeaderValue*>(m_values.GetNext(at))->value();
  }
  out += "\r\n";
}

void MIMEHeader::addHeaderValue(MIMEHeaderValue* value) {
  Split();
  if (value && !m_values.AddTail(static_cast<void*>(value))) delete value;
}

void MIMEHeader::addHeaderValue(const CQKString& text) {
  addHeaderValue(new (std::nothrow) MIMEHeaderValue(text));
}

MIMEHeaderValue* MIMEHeader::getHeaderValue(const char* text) {
  Split();
  for (void* at = m_values.Begin(); at;) {
    MIMEHeaderValue* value = static_cast<MIMEHeaderValue*>(m_values.GetNext(at));
    if (strcasecmp(value->value(), text) == 0) return value;
  }
  return nullptr;
}

MIMEHeaderValue* MIMEHeader::getFirstHeaderValue() {
  Split();
  m_cursor = m_values.Begin();
  return getNextHeaderValue();
}

MIMEHeaderValue* MIMEHeader::getNextHeaderValue() {
  return static_cast<MIMEHeaderValue*>(m_values.GetNext(m_cursor));
}

void MIMEHeader::clearHeaderValueList() {
  m_split = nullptr;
  m_cursor = nullptr;
  while (!m_values.IsEmpty()) delete static_cast<MIMEHeaderValue*>(m_values.RemoveHead());
}

}  // namespace vexel
