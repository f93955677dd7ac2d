#include "xml/element.h"

#include <gtest/gtest.h>

#include "tests/xml/written.h"
#include "xml/document.h"
#include "xml/escape.h"

namespace vgps {
namespace {

XmlDocument documentOf(std::string_view text) {
  XmlDocument document;
  EXPECT_TRUE(document.Load(text, XmlLoadMode::text));
  return document;
}

TEST(XmlEscape, RowsBothWays) {
  struct Row {
    std::string_view plain;
    std::string_view stored;
  };
  constexpr Row kRows[] = {{"", ""},
                           {"abc", "abc"},
                           {"<a & \"b\" 'c'>", "&lt;a &amp; &quot;b&quot; &apos;c&apos;&gt;"},
                           {"&#233;", "&#233;"},
                           {"&", "&amp;"},
                           {"&&#&", "&amp;&#&amp;"},
                           {"&lt;", "&amp;lt;"},
                           {"&amp;lt;", "&amp;amp;lt;"}};
  for (const Row& row : kRows) {
    EXPECT_EQ(escapeXml(row.plain), row.stored);
    EXPECT_EQ(unescapeXml(row.stored), row.plain);
    EXPECT_EQ(unescapedLength(row.stored), row.plain.size());
    EXPECT_EQ(needsEscape(row.plain), row.plain != row.stored);
    EXPECT_TRUE(readsAs(row.stored, row.plain));
    EXPECT_FALSE(readsAs(row.stored, std::string(row.plain) + "x"));
  }
  for (const std::string_view odd : {"&", "&x;", "&ltx", "&amp", "a&"})
    EXPECT_EQ(unescapeXml(odd), odd);
}

TEST(XmlElement, ChildrenAreFoundAddedAndRemovedInOrder) {
  XmlDocument document;
  XmlElement root = document.GetRootElement();
  for (const char* name : {"a", "b", "a", "B", "a&b"}) root.AddElement(name);
  EXPECT_EQ(root.GetChildrenNum(), 5U);
  EXPECT_EQ(root.FindElementIndex("a"), 0);
  EXPECT_EQ(root.FindElementIndex("B"), 3);
  EXPECT_EQ(root.FindElementIndex("a&b"), 4);
  EXPECT_EQ(root.FindElementIndex("a&amp;b"), -1);
  EXPECT_EQ(root.FindElementIndex("c"), -1);
  EXPECT_FALSE(root.FindElement("c"));
  EXPECT_EQ(root.FindElement("c", true).GetParent(), root);
  EXPECT_EQ(root.FindElementIndex("c"), 5);
  EXPECT_EQ(root.FindElement("c", true), root.GetChild(5)) << "found, not created again";
  EXPECT_EQ(root.RemoveElement(9), 6U);
  EXPECT_EQ(root.RemoveElement(1), 5U);
  EXPECT_EQ(root.RemoveElement(4), 4U);
  EXPECT_EQ(root.RemoveElement(0), 3U);
  EXPECT_EQ(written(document), "<root>\r\n\t<a/>\r\n\t<B/>\r\n\t<a&amp;b/>\r\n</root>\r\n");
  root.RemoveAllElements();
  EXPECT_EQ(root.GetChildrenNum(), 0U);
  EXPECT_FALSE(root.Remove()) << "the root stays";
  char buffer[8];
  EXPECT_EQ(root.GetElementName(nullptr), 4U);
  EXPECT_EQ(root.GetElementName(buffer), 4U);
  EXPECT_STREQ(buffer, "root");
  root.SetElementName("<x>");
  EXPECT_EQ(root.GetElementName(nullptr), 3U);
  EXPECT_EQ(written(document), "<&lt;x&gt;/>\r\n");
}

TEST(XmlElement, ElementsMoveWithinADocumentAndAreCopiedFromAnother) {
  XmlDocument document = documentOf("<r><a x=\"1\">t<b/><!--c--><d>u</d>v</a><e/></r>");
  XmlElement root = document.GetRootElement();
  XmlElement a = root.FindElement("a");
  XmlElement e = root.FindElement("e");
  EXPECT_FALSE(a.AddElement(root)) << "would hold itself";
  EXPECT_FALSE(a.AddElement(a));
  EXPECT_FALSE(a.FindElement("b").AddElement(a));
  XmlDocument other;
  EXPECT_NE(other.GetRootElement().AddElement(a), a);
  EXPECT_EQ(e.AddElement(a), a);
  const std::string inner =
      "<a x=\"1\">\r\nt\r\n\t\t<b/>\r\n<!--c-->\r\n\t\t<d>\r\nu\r\n\t\t</d>\r\nv\r\n\t</a>\r\n";
  EXPECT_EQ(written(other), "<root>\r\n\t" + inner + "</root>\r\n");
  EXPECT_EQ(root.GetChildrenNum(), 1U);
  EXPECT_EQ(a.GetDepth(), 2U);
  document.SetRootElement(a);
  EXPECT_EQ(document.GetRootElement().GetElementName(), "a");
  EXPECT_EQ(document.GetRootElement().GetSubtreeNum(), 3U);
  document.SetRootElement(other.GetRootElement());
  EXPECT_EQ(written(document), written(other));
}

TEST(XmlElement, LiteralsMakeElements) {
  XmlDocument document;
  XmlElement root = document.GetRootElement();
  root.AddElement(document.createElement("<t n=\"a&amp;b\" /"));
  root.AddElement(document.createElement("<p x=\"1\" />"));
  root.AddElement(document.createElement("<q><r/>s</q>"));
  EXPECT_FALSE(document.createElement("nothing"));
  EXPECT_FALSE(document.createElement(""));
  root.GetChild(1).AddVariable("y", "2");
  EXPECT_EQ(root.GetChild(0).FindAttribute("n").GetValue(), "a&b");
  EXPECT_EQ(written(document),
            "<root>\r\n\t<t n=\"a&amp;b\"/>\r\n\t<p x=\"1\" y=\"2\"/>\r\n"
            "\t<q>\r\n\t\t<r/>\r\ns\r\n\t</q>\r\n</root>\r\n");
}

TEST(XmlElement, AttributesKeepTheirOrderAndTheFirstOfANameIsFound) {
  XmlDocument document = documentOf("<r a=\"1\" b=\"2\"/>");
  XmlElement root = document.GetRootElement();
  root.AddElement("other").AddVariable("z", "0");  // now a third has no room behind the two
  root.AddVariable("a", "3");
  root.AddVariable("c&", "<\"'>");
  EXPECT_EQ(root.FindVariable("a"), 0);
  EXPECT_EQ(root.FindAttribute("a").GetValue(), "1");
  EXPECT_EQ(root.FindVariable("c&"), 3);
  EXPECT_EQ(root.FindVariable("A"), -1);
  EXPECT_FALSE(root.FindAttribute("A").SetValue("x"));
  root.FindAttribute("a").SetValue("longer than it was");
  root.FindAttribute("b").SetValue("");
  EXPECT_EQ(root.RemoveVariable(0), 3U);
  EXPECT_EQ(root.RemoveVariable(7), 3U);
  EXPECT_EQ(root.FindAttribute("a").GetValue(), "3");
  EXPECT_EQ(root.GetVariables().size(), 3U);
  root.RemoveAllElements();
  EXPECT_EQ(written(document), "<r b=\"\" a=\"3\" c&amp;=\"&lt;&quot;&apos;&gt;\"/>\r\n");
  const XmlAttribute last = root.GetVariable(2);
  char buffer[16];
  EXPECT_EQ(last.GetValue(nullptr), 4U);
  EXPECT_EQ(last.GetValue(buffer), 4U);
  EXPECT_STREQ(buffer, "<\"'>");
  EXPECT_EQ(last.GetName(buffer), 2U);
  EXPECT_STREQ(buffer, "c&");
  EXPECT_EQ(last.GetElement(), root);
}

// Rows are moved, values outgrow their place and their row; every attribute stays what it was.
TEST(XmlElement, ManyAndLongAttributes) {
  XmlDocument document;
  XmlElement elements[] = {document.GetRootElement().AddElement("a"),
                           document.GetRootElement().AddElement("b")};
  const auto valueOf = [](size_t i) {
    return std::string(i * 97 % 5000, static_cast<char>('a' + i % 26));
  };
  for (size_t i = 0; i < 300; ++i) {
    for (XmlElement& element : elements) element.AddVariable("k" + std::to_string(i), "0");
  }
  for (size_t i = 0; i < 300; ++i) elements[i % 2].GetVariable(i).SetValue(valueOf(i));
  elements[0].GetVariable(0).SetValue(std::string(70000, 'x'));
  elements[0].GetVariable(0).SetValue(std::string(66000, 'y'));
  elements[1].GetVariable(1).SetValue(std::string(70000, 'x'));
  elements[1].GetVariable(1).SetValue("short");
  EXPECT_EQ(elements[0].FindAttribute("k0").GetValue(), std::string(66000, 'y'));
  EXPECT_EQ(elements[1].FindAttribute("k1").GetValue(), "short");
  for (size_t i = 2; i < 300; ++i) {
    const std::string name = "k" + std::to_string(i);
    EXPECT_EQ(elements[i % 2].FindAttribute(name).GetValue(), valueOf(i));
    EXPECT_EQ(elements[1 - i % 2].FindAttribute(name).GetValue(), "0");
  }
  // More names than an attribute's row can number.
  std::string text = "<r";
  for (int i = 0; i < 70000; ++i)
    text += " n" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
  XmlDocument wide = documentOf(text + "/>");
  EXPECT_EQ(wide.GetRootElement().FindAttribute("n69999").GetValueInt(), 69999);
  wide.GetRootElement().FindAttribute("n69999").SetValue("long enough to move");
  EXPECT_EQ(wide.GetRootElement().FindAttribute("n69999").GetValue(), "long enough to move");
  EXPECT_EQ(wide.GetRootElement().FindAttribute("n65534").GetValueInt(), 65534);
}

TEST(XmlAttribute, TypedValues) {
  XmlDocument document;
  XmlAttribute value = document.GetRootElement().AddVariable("v", "");
  value.SetValueInt(-5);
  EXPECT_EQ(value.GetValueInt(), -5);
  EXPECT_EQ(value.GetValueUInt(), 4294967291U);
  value.SetValueUInt(UINT32_MAX);
  EXPECT_EQ(value.GetValue(), "4294967295");
  value.SetValueInt64(INT64_MIN);
  EXPECT_EQ(value.GetValueInt64(), INT64_MIN);
  value.SetValueUInt64(UINT64_MAX);
  EXPECT_EQ(value.GetValueUInt64(), UINT64_MAX);
  EXPECT_EQ(value.GetValueInt64(), INT64_MAX);
}

// A position survives reading and writing as a double; 32 bits lose a digit of it.
TEST(XmlAttribute, PositionsReadAsDoublesKeepTheirText) {
  struct Row {
    const char* stored;
    const char* asFloat;
    const char* asDouble;
  };
  constexpr Row kRows[] = {{"48.117300", "48.117298", "48.117300"},
                           {"-122.0840750", "-122.084076", "-122.084075"},
                           {"123.456789", "123.456787", "123.456789"}};
  XmlDocument document;
  XmlAttribute value = document.GetRootElement().AddVariable("v", "");
  for (const Row& row : kRows) {
    value.SetValue(row.stored);
    const float single = value.GetValueFloat();
    const double full = value.GetValueDouble();
    value.SetValueFloat(single);
    EXPECT_EQ(value.GetValue(), row.asFloat);
    value.SetValueFloat(full);
    EXPECT_EQ(value.GetValue(), row.asDouble);
  }
}

TEST(XmlElement, TextsCommentsAndSectionsKeepTheirPlace) {
  XmlDocument document = documentOf("<r><a/><b/><c/></r>");
  XmlElement root = document.GetRootElement();
  root.AddContent("end");
  root.AddContent("1 & 2", 1);
  root.AddContent("&#65;", 1);
  root.AddComment("<c>", 0);
  root.AddCData("<d>", 1);
  root.AddComment("2", 2);
  root.AddContent("far", 99);
  EXPECT_EQ(written(document),
            "<r>\r\n<!--<c>-->\r\n\t<a/>\r\n1 &amp; "
            "2\r\n&#65;\r\n<![CDATA[<d>]]>\r\n\t<b/>\r\n<!--2-->\r\n"
            "\t<c/>\r\nend\r\nfar\r\n</r>\r\n");
  ASSERT_EQ(root.GetContents().size(), 4U);
  EXPECT_EQ(root.GetContents()[1].stored, "&#65;");
  EXPECT_EQ(root.GetContents()[1].position, 1U);
  EXPECT_EQ(root.GetContents()[3].position, 3U);
  EXPECT_EQ(root.GetComments()[1].position, 2U);
  EXPECT_EQ(root.GetText(), "1 & 2&#65;endfar");
  // What stood behind a removed child stands behind the one before it.
  root.RemoveElement(1);
  EXPECT_EQ(root.GetComments()[1].position, 1U);
  root.RemoveElement(0);
  EXPECT_EQ(written(document),
            "<r>\r\n<!--<c>-->\r\n<!--2-->\r\n1 &amp; "
            "2\r\n&#65;\r\n<![CDATA[<d>]]>\r\n\t<c/>\r\nend\r\nfar\r\n"
            "</r>\r\n");
  root.SetText("one");
  EXPECT_EQ(root.GetText(), "one");
  EXPECT_EQ(root.GetCDatas().size(), 1U);
  root.RemoveAllElements();
  EXPECT_EQ(root.GetContents()[0].position, 0U);
}

TEST(XmlElement, OneTextInEveryCompany) {
  const struct {
    void (*change)(XmlElement&);
    std::string_view inside;  // between the lines with the tags
  } rows[] = {
      {[](XmlElement&) {}, "text\r\n"},
      {[](XmlElement& n) { n.SetText("a\r\n"); }, "a\r\n\r\n"},
      {[](XmlElement& n) { n.AddContent(""); }, "text\r\n"},
      {[](XmlElement& n) { n.AddContent("2"); }, "text\r\n2\r\n"},
      {[](XmlElement& n) { n.AddComment("c"); }, "<!--c-->\r\ntext\r\n"},
      {[](XmlElement& n) { n.AddElement("c"); }, "text\r\n\t\t<c/>\r\n"},
      {[](XmlElement& n) { n.RemoveAllElements(); }, "text\r\n"},
      {[](XmlElement& n) { n.AddElement("c"), n.AddContent("0", 0), n.AddComment("1", 1); },
       "text\r\n0\r\n\t\t<c/>\r\n<!--1-->\r\n"},
      {[](XmlElement& n) { n.SetText(""), n.AddElement("c"), n.AddContent("0", 0); },
       "0\r\n\t\t<c/>\r\n"},
  };
  XmlDocument document = documentOf("<r><n>text</n></r>");
  for (const auto& row : rows) {
    document = documentOf("<r><n>text</n></r>");
    XmlElement n = document.GetRootElement().FindElement("n");
    row.change(n);
    EXPECT_EQ(written(document),
              "<r>\r\n\t<n>\r\n" + std::string(row.inside) + "\t</n>\r\n</r>\r\n");
  }
  document = documentOf("<r><n>text</n></r>");
  document.GetRootElement().FindElement("n").SetText("");
  EXPECT_EQ(written(document), "<r>\r\n\t<n/>\r\n</r>\r\n");
}

TEST(XmlElement, SpacesInsteadOfTabs) {
  XmlDocument document = documentOf("<r><a><b/></a></r>");
  XmlElement a = document.GetRootElement().GetChild(0);
  a.GetChild(0).setIndentsWithSpaces(true);
  EXPECT_TRUE(a.GetChild(0).indentsWithSpaces());
  EXPECT_EQ(written(document), "<r>\r\n\t<a>\r\n  <b/>\r\n\t</a>\r\n</r>\r\n");
}

TEST(XmlElement, QueryByNameAndNumber) {
  XmlDocument document =
      documentOf("<t><w/><x><t><w/></t><Placemark/></x><n12/><w><w/></w><a&amp;b/></t>");
  const XmlElement root = document.GetRootElement();
  struct Row {
    std::string_view expression;
    int depth;
    size_t count;
  };
  constexpr Row kRows[] = {
      {"? == \"t\"", -1, 2},  {"?==\"w\"", -1, 4},   {"? == \"w\"", 1, 2},
      {"? == \"t\"", 0, 1},   {"? == \"W\"", -1, 0}, {"? != \"w\"", -1, 6},
      {"? == \"*\"", -1, 10}, {"? != \"*\"", -1, 0}, {"? == \"Place*\"", -1, 0},
      {"w == \"w\"", -1, 10}, {"? == 0", -1, 0},     {"1 == 1", -1, 10},
      {"0 == 0", -1, 10},     {"00 == 0", -1, 0},    {"2 < 10", -1, 10},
      {"-2 >= 10", -1, 0},    {"", -1, 0},           {"? ~ \"w\"", -1, 0},
      {"? < \"w\"", -1, 0},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(root.Query(row.expression, row.depth).size(), row.count)
        << row.expression << row.depth;
  }
  std::vector<XmlElement> found(root.GetSubtreeNum() + 1);
  ASSERT_EQ(root.Query("? == \"w\"", found.data()), 4U);
  EXPECT_EQ(found[1].GetParent().GetElementName(), "t");
  EXPECT_EQ(found[3].GetParent(), found[2]) << "document order";
  EXPECT_EQ(XmlElement().Query("? == \"*\"").size(), 0U);
  const XmlDocument numbers = documentOf("<r><12/><0/><7x/></r>");
  EXPECT_EQ(numbers.GetRootElement().Query("? > 6").size(), 2U);
  EXPECT_EQ(numbers.GetRootElement().Query("? == 0").size(), 1U);
}

// Removed rows serve again, and nothing of them shows.
TEST(XmlElement, RemovedElementsLeaveNothingBehind) {
  XmlDocument document = documentOf("<r/>");
  XmlElement root = document.GetRootElement();
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 100; ++i) {
      XmlElement child = root.AddElement("c");
      child.AddVariable("i", std::to_string(i));
      child.AddElement("d").SetText("t");
      child.AddComment("x");
    }
    while (root.GetChildrenNum() > 1)
      root.RemoveElement(round == 1 ? 0 : root.GetChildrenNum() / 2);
    root.RemoveElement(0);
  }
  root.AddElement("e").AddElement("f");
  EXPECT_EQ(written(document), "<r>\r\n\t<e>\r\n\t\t<f/>\r\n\t</e>\r\n</r>\r\n");
}

TEST(XmlElement, AHandleForNothingAnswersWithNothing) {
  XmlElement none;
  EXPECT_FALSE(none.AddElement("x"));
  EXPECT_FALSE(none.FindElement("x", true));
  EXPECT_FALSE(none.AddVariable("a", "b"));
  EXPECT_EQ(
      none.GetChildrenNum() + none.GetVariableNum() + none.RemoveElement(0) + none.GetSubtreeNum(),
      0U);
  EXPECT_EQ(none.FindElementIndex("x"), -1);
  EXPECT_EQ(none.GetText() + none.GetElementName() + none.FindAttribute("x").GetValue(), "");
  EXPECT_FALSE(none.Remove());
  none.SetText("x"), none.AddComment("x"), none.RemoveAllElements();
  for ([[maybe_unused]] const XmlElement child : none.GetChildren()) FAIL();
}

}  // namespace
}  // namespace vgps
