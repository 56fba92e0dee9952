#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

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

TEST(LocatedJson, AnExponentOfAnyLengthIsANumber) {
  for (const std::string number :
       {"1e99999999999", "-1.5E+0000000000001", "1e-123456789", "0e999999999999999999"}) {
    const auto document = parseLocated("{\"a\":" + number + ",\"b\":2}");
    ASSERT_TRUE(document.root) << number;
    EXPECT_EQ(document.root->find("a")->text, number);
    EXPECT_EQ(at(document.root->find("b")->key), "1:" + std::to_string(7 + number.size()));
  }
  EXPECT_FALSE(parseLocated("{\"a\":1e1234567890x}").root);
  EXPECT_FALSE(parseLocated("{\"a\":1e12345678901.5}").root);
}

// The store keeps an empty name for the elements of an array in an array, as the tree of places does.
void expectSame(const LocatedNode& node, const SettingsManager::Tree& tree) {
  EXPECT_EQ(node.text, tree.data());
  ASSERT_EQ(node.children.size(), tree.size());
  auto child = tree.begin();
  for (const LocatedNode& inside : node.children) {
    EXPECT_EQ(inside.name, child->first);
    expectSame(inside, child->second);
    ++child;
  }
}

TEST(LocatedJson, ItReadsWhatTheSettingsStoreReads) {
  const std::string whole =
      R"({"a":[1,-2.5e3,"t\u00e4\"x",{"b":[[],[1,[2]]]}],"":{},"c":null,"a":true,"e":1e99})";
  const std::string bytes = "{}[]:,\"\\ \n\te+-.0123456789truefalsn\xC3\xA4/";
  std::mt19937 random(7);
  const auto below = [&random](std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
  };
  int accepted = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string text = whole;
    for (std::size_t changes = below(3); changes > 0; --changes) {
      const std::size_t place = below(text.size());
      switch (below(3)) {
        case 0:
          text[place] = bytes[below(bytes.size())];
          break;
        case 1:
          text.insert(place, below(4) == 0 ? 12 : 1, bytes[below(bytes.size())]);
          break;
        default:
          text.erase(place, 1);
          break;
      }
    }
    SettingsManager settings;
    std::istringstream in(text);
    const bool isRead = settings.loadStream(in, SettingsManager::JSON);
    const LocatedDocument document = parseLocated(text);
    ASSERT_EQ(document.root.has_value(), isRead) << text;
    if (isRead) {
      ++accepted;
      expectSame(*document.root, settings.getTree());
    } else {
      EXPECT_LE(document.fault.offset, text.size());
    }
  }
  EXPECT_GT(accepted, 5000);
  EXPECT_LT(accepted, 15000);
}

TEST(LocatedJson, EscapesAreResolved) {
  const auto document = parseLocated(R"({"\"a\\":"\u00e4\"\\"})");
  ASSERT_TRUE(document.root);
  EXPECT_EQ(document.root->children[0].name, "\"a\\");
  EXPECT_EQ(document.root->children[0].text, "\u00e4\"\\");
}

}  // namespace
}  // namespace orvantis::toolkit
