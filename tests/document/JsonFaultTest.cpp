#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "document/Check.h"

// What a text that is not JSON is told, and where.

namespace orvantis::toolkit {
namespace {

struct Case {
  std::string text;
  std::string fault;  // line:column: text
};

std::string fault(const std::string& text) {
  const CheckedDocument document = check(text);
  EXPECT_EQ(document.findings.size(), 1U);
  EXPECT_FALSE(document.configuration);
  const Finding& finding = document.findings[0];
  EXPECT_EQ(finding.kind, FindingKind::JsonFault);
  EXPECT_EQ(finding.path, "");
  return std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) + ": " + finding.text;
}

std::string excerpt(const std::string& text) {
  return check(text).findings.at(0).excerpt;
}

void expectFaults(const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    EXPECT_EQ(fault(one.text), one.fault) << one.text;
  }
}

TEST(JsonFault, CommasTooManyAndTooFew) {
  expectFaults({
      {"{\"a\":1,}", "1:7: a comma stands before \"}\"; remove the comma"},
      {"{\"a\":[1,\n  2,\n]}", "2:4: a comma stands before \"]\"; remove the comma"},
      {"{\"a\":1,,\"b\":2}", "1:8: a comma too many; remove it"},
      {"{,}", "1:2: a comma too many; remove it"},
      {"[,1]", "1:2: a comma too many; remove it"},
      {"{\"a\":1\n\"b\":2}", "1:6: a comma is missing after this value"},
      {"{\"a\":{} {}}", "1:7: a comma is missing after this value"},
      {"{\"a\":\"b\" [1]}", "1:8: a comma is missing after this value"},
      {"[1 2]", "1:4: a comma is missing before \"2\""},
      {"[true false]", "1:7: a comma is missing before \"false\""},
  });
}

TEST(JsonFault, Comments) {
  expectFaults({
      {"{\"a\":1 // c\n}", "1:8: JSON has no comments; remove it"},
      {"/* c */{}", "1:1: JSON has no comments; remove it"},
      {"{\n # c\n}", "2:2: JSON has no comments; remove it"},
      {"{} // c", "1:4: text follows after the end of the document; remove it"},
  });
}

TEST(JsonFault, Quotes) {
  expectFaults({
      {"{'a':1}", "1:2: a text must be in double quotes; write \" instead of '"},
      {"{\"a\":'b'}", "1:6: a text must be in double quotes; write \" instead of '"},
      {"{\"a\":`b`}", "1:6: a text must be in double quotes; write \" instead of `"},
      {"{\u201Ca\u201D:1}", "1:2: a text must be in double quotes; write \" instead of \u201C"},
      {"{a:1}", "1:2: a key must be in double quotes; write \"a\""},
      {"{\"b\":1, a:1}", "1:9: a key must be in double quotes; write \"a\""},
      {"{\"a\":front}", "1:6: a text must be in double quotes; write \"front\""},
      {"{\"a\":\"b\nc\"}", "1:8: a text has to end in its line; close it with a quote"},
      {"{\"a\":\"b\r\nc\"}", "1:8: a text has to end in its line; close it with a quote"},
      {"{\"a\":\"b\tc\"}", "1:8: a tab cannot stand in a text; write \\t"},
      {"{\"a\":\"b\x01\"}", "1:8: a control character cannot stand in a text; remove it"},
      {R"({"a":"C:\Users"})", R"(1:9: "\U" is not an escape; write \\ for a backslash)"},
      {R"({"a":"\u12"})", R"(1:7: \u needs four hexadecimal digits, and a pair of them beyond U+FFFF)"},
      {R"({"a":"\ud800"})", R"(1:7: \u needs four hexadecimal digits, and a pair of them beyond U+FFFF)"},
  });
}

TEST(JsonFault, NumbersThatJsonDoesNotHave) {
  expectFaults({
      {"{\"x\": 1,5}", "1:8: a number has a decimal point, not a comma; write . instead of ,"},
      {"{\"x\": 1,5, \"y\": 2}", "1:8: a number has a decimal point, not a comma; write . instead of ,"},
      {"{\"x\":NaN}", "1:6: NaN is not a number in JSON; give a finite one"},
      {"{\"x\":nan}", "1:6: nan is not a number in JSON; give a finite one"},
      {"{\"x\":-Infinity}", "1:6: -Infinity is not a number in JSON; give a finite one"},
      {"{\"x\":inf}", "1:6: inf is not a number in JSON; give a finite one"},
      {"{\"x\":+1}", "1:6: \"+1\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":.5}", "1:6: \".5\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":5.}", "1:6: \"5.\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":05}", "1:6: \"05\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":0x1F}", "1:6: \"0x1F\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":1.5m}", "1:6: \"1.5m\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":1e}", "1:6: \"1e\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":1.2.3}", "1:6: \"1.2.3\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
      {"{\"x\":- }", "1:6: \"-\" is not a number in JSON; write it like 0.5, -2 or 1e3"},
  });
}

TEST(JsonFault, WordsThatJsonDoesNotHave) {
  expectFaults({
      {"{\"x\":True}", "1:6: True is not JSON; write true"},
      {"{\"x\":no}", "1:6: no is not JSON; write false"},
      {"{\"x\":None}", "1:6: None is not JSON; write null"},
      {"{\"x\":undefined}", "1:6: undefined is not JSON; write null"},
      {"{\"x\": tru }", "1:7: a text must be in double quotes; write \"tru\""},
      {"{\"x\":true1}", "1:6: a text must be in double quotes; write \"true1\""},
  });
}

TEST(JsonFault, BracketsAndColons) {
  expectFaults({
      {"{}}", "1:3: a \"}\" too many; remove it"},
      {"[]\n]", "2:1: a \"]\" too many; remove it"},
      {"{} {}", "1:4: text follows after the end of the document; remove it"},
      {"{\"a\":[1,2}", "1:10: a \"]\" is missing before this \"}\""},
      {"{\"a\":1]", "1:7: a \"}\" is missing before this \"]\""},
      {"[\"a\":1]", "1:5: a key cannot stand in a list; put it in { }"},
      {"{\"a\"}", "1:5: a colon and a value are missing after the key"},
      {"{\"a\",\"b\"}", "1:5: a colon and a value are missing after the key"},
      {"{\"a\" 1}", "1:6: a colon is missing before \"1\""},
      {"{\"a\"=1}", "1:5: a colon must separate a key and its value; write : instead of ="},
      {"{\"a\":}", "1:6: a value is missing after the colon"},
      {"{\"a\":,\"b\":1}", "1:6: a value is missing after the colon"},
      {"{{\"a\":1}}", "1:2: a key is missing before this value"},
      {"{\"a\":1,[1]}", "1:8: a key is missing before this value"},
      {"{\"a\":1:2}", "1:7: \":\" cannot stand here; remove it"},
      {"{\"a\":%}", "1:6: \"%\" cannot stand here; remove it"},
      {std::string(65, '['), "1:65: nested deeper than 64 levels"},
  });
}

TEST(JsonFault, TextsThatAreCutOff) {
  expectFaults({
      {"", "1:1: the document is empty; it has to begin with \"{\""},
      {"\n \n", "1:1: the document is empty; it has to begin with \"{\""},
      {"{\n\n", "1:2: the document ends too early: the \"{\" of line 1, column 1 is not closed"},
      {"{\"a\":\n [1, ", "2:5: the document ends too early: the \"[\" of line 2, column 2 is not closed"},
      {"{\"a\":\"b", "1:8: the document ends too early: a text is not closed with a quote"},
      {"tru", "1:4: the document ends too early"},
  });
}

TEST(JsonFault, WhatIsNotADocumentAtAll) {
  expectFaults({
      {"%PDF-1.4", "1:1: the document has to begin with \"{\""},
      {"name: x\n", "1:1: the document has to begin with \"{\""},
      {"<xml/>", "1:1: the document has to begin with \"{\""},
      {std::string("PK\x03\x04\0", 5), "1:1: this is binary data, not text; give a JSON document"},
      {"\x1f\x8b\x08", "1:1: this is binary data, not text; give a JSON document"},
  });
}

TEST(JsonFault, OtherEncodings) {
  expectFaults({
      {std::string("\xFF\xFE{\0}\0", 6), "1:1: the text is UTF-16; save it as UTF-8"},
      {std::string("\xFE\xFF\0{\0}", 6), "1:1: the text is UTF-16; save it as UTF-8"},
      {std::string("{\0}\0", 4), "1:1: the text is UTF-16; save it as UTF-8"},
      {std::string("\0{\0}", 4), "1:1: the text is UTF-16; save it as UTF-8"},
      {"{\"n\":\"K\xE4se\"}", "1:8: the byte 0xE4 is not UTF-8; save the file as UTF-8"},
      {"{\"n\":\"K\xE4\"}", "1:8: the byte 0xE4 is not UTF-8; save the file as UTF-8"},
      {"{\n\x93n\x94:1}", "2:1: the byte 0x93 is not UTF-8; save the file as UTF-8"},
      {"{\u00A0\"a\":1}", "1:2: a no-break space stands between values; write a plain one"},
      {"{\"a\":\u00D7}", "1:6: this character cannot stand between values; remove it"},
  });
}

TEST(JsonFault, TheLineIsQuotedWithACaret) {
  EXPECT_EQ(excerpt("{\n  \"a\": 1,\n}"), "  \"a\": 1,\n        ^");
  EXPECT_EQ(excerpt("{\r\n\t\"b\xC3\xA4\": x\r\n}"), " \"b\xC3\xA4\": x\n       ^");
  EXPECT_EQ(excerpt("\xEF\xBB\xBFx"), "x\n^");
  EXPECT_EQ(excerpt("{\"a\":\"\x1B[31m\x01"), "{\"a\":\"\\x1b[31m\\x01\n      ^");
}

TEST(JsonFault, ALongLineIsCutAroundTheFault) {
  const std::string long200(200, 'x');
  EXPECT_EQ(
      excerpt("{\"a\":\"" + long200 + "\" y" + long200),
      "..." + std::string(46, 'x') + "\" y" + std::string(23, 'x') + "...\n" + std::string(51, ' ') + "^");
  std::string umlauts;
  for (int i = 0; i < 100; ++i) {
    umlauts += "\u00E4";
  }
  EXPECT_EQ(
      excerpt("{\"a\":\"" + umlauts + "\"y" + umlauts),
      "..." + umlauts.substr(0, 46) + "\"y" + umlauts.substr(0, 24) + "...\n" + std::string(27, ' ') + "^");
}

TEST(JsonFault, WhatCannotBeShownIsNot) {
  EXPECT_EQ(excerpt(""), "");
  EXPECT_EQ(excerpt(std::string("{\0}\0", 4)), "");
}

}  // namespace
}  // namespace orvantis::toolkit
