#include <string>

#include <gtest/gtest.h>

#include "document/LocatedJson.h"

namespace orvantis::toolkit {
namespace {

using Kind = LocatedNode::Kind;

std::string at(const Position& position) {
  return std::to_string(position.line) + ":" + std::to_string(position.column);
}

TEST(LocatedJson, KeysAndValuesHaveTheirPlaces) {
  const auto document = parseLocated(
      "\xEF\xBB\xBF{\r\n  \"a\":\n  1,\n\n  \"l\xC3\xB6st\": [ 2,\n -3e2 ], \"t\" : \"x\", \"o\": "
      "{},\"b\":true}");
  ASSERT_TRUE(document.root);
  const LocatedNode& root = *document.root;
  EXPECT_EQ(at(root.value), "1:1");
  EXPECT_EQ(at(root.find("a")->key), "2:3");
  EXPECT_EQ(at(root.find("a")->value), "3:3");
  const auto list = root.all("l\xC3\xB6st");
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(at(list[0]->value), "5:13");
  EXPECT_EQ(at(list[1]->value), "6:2");
  EXPECT_EQ(at(list[1]->key), "5:3");
  EXPECT_EQ(list[1]->text, "-3e2");
  EXPECT_EQ(at(root.find("t")->key), "6:10");
  EXPECT_EQ(at(root.find("t")->value), "6:16");
  EXPECT_EQ(at(root.find("o")->value), "6:26");
  EXPECT_EQ(at(root.find("b")->value), "6:33");
}

TEST(LocatedJson, AnArrayUnderAKeyIsRepeatedChildrenOfThatKey) {
  const auto document = parseLocated(R"({"a":[1,[2,[3]]],"b":[],"c":[[]],"":[]})");
  ASSERT_TRUE(document.root);
  const LocatedNode& root = *document.root;
  ASSERT_EQ(root.all("a").size(), 2U);
  EXPECT_TRUE(root.all("a")[0]->isElement);
  EXPECT_EQ(root.all("a")[1]->kind, Kind::Array);
  EXPECT_EQ(root.all("a")[1]->children[0].name, "");
  EXPECT_EQ(root.find("b"), nullptr);
  ASSERT_NE(root.findEmptyArray("b"), nullptr);
  EXPECT_EQ(at(root.findEmptyArray("b")->key), "1:18");
  EXPECT_EQ(root.findEmptyArray("a"), nullptr);
  EXPECT_EQ(root.findEmptyArray("c"), nullptr);
  EXPECT_EQ(root.find("c")->kind, Kind::Array);
}

TEST(LocatedJson, KindsAreTold) {
  const auto document = parseLocated(R"({"o":{},"t":"1","n":1,"z":null})");
  ASSERT_TRUE(document.root);
  EXPECT_EQ(document.root->find("o")->kind, Kind::Object);
  EXPECT_EQ(document.root->find("t")->kind, Kind::Text);
  EXPECT_EQ(document.root->find("n")->kind, Kind::Literal);
  EXPECT_EQ(document.root->find("z")->text, "null");
  EXPECT_EQ(parseLocated("[1]").root->kind, Kind::Array);
  EXPECT_EQ(parseLocated(" 7 ").root->text, "7");
  EXPECT_EQ(at(parseLocated(" 7 ").root->value), "1:2");
}

TEST(LocatedJson, TextThatIsNotADocumentGivesTheFault) {
  for (const std::string text : {"", "{", "{} {}", "{\"a\":1,}", "nul", "\"a\nb\""}) {
    EXPECT_FALSE(parseLocated(text).root) << text;
  }
  const auto deep = parseLocated(std::string(100000, '['));
  EXPECT_FALSE(deep.root);
  EXPECT_EQ(deep.fault.reason, SyntaxFault::Reason::TooDeep);
  EXPECT_EQ(deep.fault.offset, 64U);
  const auto extra = parseLocated("{} \n{}");
  EXPECT_EQ(extra.fault.reason, SyntaxFault::Reason::TextAfterwards);
  EXPECT_EQ(at(extra.fault.at), "2:1");
  const auto cut = parseLocated("{\"a\":\n [1");
  EXPECT_EQ(cut.fault.reason, SyntaxFault::Reason::CutOff);
  EXPECT_FALSE(cut.fault.inObject);
  EXPECT_EQ(at(cut.fault.open.value()), "2:2");
}

TEST(LocatedJson, SixtyFourLevelsAreRead) {
  EXPECT_TRUE(parseLocated(std::string(64, '[') + std::string(64, ']')).root);
  EXPECT_FALSE(parseLocated(std::string(65, '[') + std::string(65, ']')).root);
}

TEST(LocatedJson, LongTextsAndNumbersAreWhole) {
  const std::string text(200000, 'a');
  const std::string digits(50000, '1');
  const auto document = parseLocated("{\"" + text + "\":\"" + text + "\",\"n\":" + digits + "}");
  ASSERT_TRUE(document.root);
  EXPECT_EQ(document.root->children[0].name, text);
  EXPECT_EQ(document.root->children[0].text, text);
  EXPECT_EQ(document.root->find("n")->text, digits);
}

TEST(LocatedJson, EscapesAreResolved) {
  const auto document = parseLocated(R"({"\"a\\":"\u00e4\"\\"})");
  ASSERT_TRUE(document.root);
  EXPECT_EQ(document.root->children[0].name, "\"a\\");
  EXPECT_EQ(document.root->children[0].text, "\u00e4\"\\");
}

}  // namespace
}  // namespace orvantis::toolkit
