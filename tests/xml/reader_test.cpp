#include "xml/reader.h"

#include <gtest/gtest.h>

#include "xml/document.h"

namespace vgps {
namespace {

// What a text reads as, by what is written of it: the root's lines without the declaration, each
// line end as "|", each tab as "~".
std::string readAs(std::string_view text, bool lenient = false) {
  XmlDocument document;
  document.Load(text, XmlLoadMode::text, {lenient});
  std::string saved;
  EXPECT_EQ(document.saveText(saved), 1);
  std::string out;
  for (const char c : saved.substr(kXmlDeclaration.size() + 2)) {
    if (c == '\t') out += '~';
    if (c == '\n') out += '|';
    if (c != '\t' && c != '\n' && c != '\r') out += c;
  }
  return out;
}

struct Row {
  std::string_view text;
  std::string_view reads;
};

TEST(XmlReader, TagsAndAttributes) {
  constexpr Row kRows[] = {
      {"<a/>", "<a/>|"},
      {"<a></a>", "<a/>|"},
      {"<p x=\"1\" />", "<p x=\"1\"/>|"},
      {"<p\tx=\"1\"\r\n  y=\"2\"/>", "<p x=\"1\" y=\"2\"/>|"},
      {"<a></b>", "<a/>|"},                           // closing names are not compared
      {"<a><b></a>", "<a>|~<b/>|</a>|"},              // and so this one closes b
      {"<a><b><c>", "<a>|~<b>|~~<c/>|~</b>|</a>|"},   // the end closes everything
      {"<a x=\"1>2\"/>", "<a>|2\"/>|</a>|"},          // ">" in a value ends the tag
      {"<a lat='1' lon=\"2\"/>", "<a lat=\"2\"/>|"},  // single quotes do not delimit
      {"<a x='1'/>", "<a/>|"},
      {"<a x=1 y=\"2\"/>", "<a x=\"2\"/>|"},  // what is between "=" and the quote is lost
      {"<a b c=\"1\"/>", "<a b c=\"1\"/>|"},  // a name reaches up to the "="
      {"<a x =\"1\"/>", "<a x =\"1\"/>|"},
      {"<a x= \"1\"/>", "<a x=\"1\"/>|"},
      {"<a =\"1\"/>", "<a =\"1\"/>|"},
      {"<a x=\"\"/>", "<a x=\"\"/>|"},
      {"<a x=\"1\"y=\"2\"/>", "<a x=\"1\" y=\"2\"/>|"},
      {"<a x=\"1\"/y=\"2\"/>", "<a x=\"1\"/>|"},  // attributes end at "/"
      {"<a x/y=\"2\"/>", "<a x/y=\"2\"/>|"},
      {"<a / x=\"1\">t</a>", "<a>|t|</a>|"},
      {"<a x=\"1\" x=\"2\"/>", "<a x=\"1\" x=\"2\"/>|"},
      {"<a x=\"1\" y>t</a>", "<a x=\"1\">|t|</a>|"},      // without "=" the attributes end
      {"<a x=\"1\" y=\"2>t</a>", "<a x=\"1\">|t|</a>|"},  // never closed: no attribute
      {"<a x=\"1/>", "<a/>|"},
      {"<a x=\"<b>\"/>", "<a>|\"/>|</a>|"},
      {"<a x=\"\n\"/>", "<a x=\"|\"/>|"},
      {"<gpx\r\n v=\"1\"/>", "<gpx| v=\"1\"/>|"},  // CR and LF do not end a name
      {"<a=\"1\"/>", "<a=/>|"},
      {"<a\"b\"/>", "<a/>|"},
      {"<a.b:c-d/>", "<a.b:c-d/>|"},
      {"<tr\xE8s/>", "<tr\xE8s/>|"},      // eight-bit text stays what it is
      {"<t n=\"x\" /", "<t n=\"x\"/>|"},  // the last ">" may be missing
      {"<t", "<t/>|"},
      {"<a><b", "<a>|~<b/>|</a>|"},
      {"<a x='it&apos;s' y=\"1\"/>", "<a x=\"1\"/>|"},
      {"<a&b c<d=\"1\"/>", "<a&amp;b c&lt;d=\"1\"/>|"},  // names are escaped on entry,
      {"<a&amp;b/>", "<a&amp;amp;b/>|"},                 // each time anew,
      {"<a x=\"&amp;&lt;&#233;&\"/>", "<a x=\"&amp;&lt;&#233;&\"/>|"},  // values never
      {"<a>&amp;&#233;&</a>", "<a>|&amp;&#233;&|</a>|"},
  };
  for (const Row& row : kRows) EXPECT_EQ(readAs(row.text), row.reads) << row.text;
}

TEST(XmlReader, TextCommentsAndSections) {
  constexpr Row kRows[] = {
      {"<a> \t\r\n</a>", "<a/>|"},
      {"<a>  x y\r\n</a>", "<a>|x y|</a>|"},
      {"<a>1\r\n2</a>", "<a>|1|2|</a>|"},
      {"<a>x > \"y\"</a>", "<a>|x > \"y\"|</a>|"},
      {"<a>1<b/>2<c/>3</a>", "<a>|1|~<b/>|2|~<c/>|3|</a>|"},
      {"<a><b/><c/>3</a>", "<a>|~<b/>|~<c/>|3|</a>|"},
      // At one place comments come first, then texts, then CDATA.
      {"<a>1<![CDATA[2]]><!--3-->4<b/></a>", "<a>|<!--3-->|1|4|<![CDATA[2]]>|~<b/>|</a>|"},
      {"<a><![CDATA[ <b>&amp;]]]]><![CDATA[]]></a>",
       "<a>|<![CDATA[ <b>&amp;]]]]>|<![CDATA[]]>|</a>|"},
      {"<a><!-- <b> & --></a>", "<a>|<!-- <b> & -->|</a>|"},
      {"<a><!--></a>--></a>", "<a>|<!--></a>-->|</a>|"},
      {"<a><!--x", "<a>|<!--x-->|</a>|"},
      {"<a><![CDATA[x]]", "<a>|<![CDATA[x]]]]>|</a>|"},
      {"<a>x", "<a>|x|</a>|"},
      {"<a><?pi <b>?>x</a>", "<a>|x|</a>|"},
      {"<a><?pi x>y</a>", "<a>|y|</a>|"},  // "?>" never comes: the tag ends at ">"
      {"<a><!ELEMENT b>y</a>", "<a>|y|</a>|"},
      {"<!--1--><a/><!--2-->", "<!--1-->|<a/>|<!--2-->|"},
      {"<?xml version='1.0'?>\n<!--1--><!--2-->x<a/>y", "<!--1-->|<!--2-->|<a/>|"},
      // Only the first element is the root; what later ones hold is not kept either.
      {"<a/><b><!--2--><c/>t</b><!--3-->", "<a/>|<!--3-->|"},
      {"</x><a/>", "<a/>|"},
      {"<!DOCTYPE a [ <!ENTITY p \"<p/>]>\"> <!-- ]> ' --> ]><a/>", "<a/>|"},
      {"<!DOCTYPE a SYSTEM \"x.dtd\"><a/>", "<a/>|"},
      {"<!DOCTYPEa><a/>", "<a/>|"},
      {"<!DOCTYPE a [ it's ]><a/>", "<a/>|"},
      {"<><a></a>", "<a/>|"},
      {"<t>< ></ ></t>", "<t>|~<></>|</t>|"},  // no name: "</>" would read as a closing tag
      {"<t>< x=\"1\"/></t>", "<t>|~< x=\"1\"/>|</t>|"},
      {std::string_view("<d>\0</d>", 8), std::string_view("<d>|\0|</d>|", 11)},
  };
  for (const Row& row : kRows) EXPECT_EQ(readAs(row.text), row.reads) << row.text;
}

TEST(XmlReader, LenientlyAsOtherProgramsWrite) {
  constexpr Row kRows[] = {
      {"<a lat='1' lon=\"2\"/>", "<a lat=\"1\" lon=\"2\"/>|"},
      {"<a x='it is \"1\"'/>", "<a x=\"it is &quot;1&quot;\"/>|"},
      {"<a x=\"1>2\" y='/>'>t</a>", "<a x=\"1&gt;2\" y=\"/&gt;\">|t|</a>|"},
      {"<a x = \"1\"  y\r\n=\r\n'2'/>", "<a x=\"1\" y=\"2\"/>|"},
      {"<gpx\r\nv=\"1\"\nw=\"2\"/>", "<gpx v=\"1\" w=\"2\"/>|"},
      {"<gpx\n>x</gpx\n>", "<gpx>|x|</gpx>|"},
      {"<a x=\"&#65;&#x42;&#233;&#38;&#60;&amp;&lt;\"/>",
       "<a x=\"AB\xC3\xA9&amp;&lt;&amp;&lt;\"/>|"},
      {"<a>&#65;&#x1F600;&#;&#x;&#12</a>", "<a>|A\xF0\x9F\x98\x80&#;&#x;&#12|</a>|"},
      {"<a>&#1114112;&#99999999999;</a>", "<a>|\xEF\xBF\xBD\xEF\xBF\xBD|</a>|"},
      {"<a> <![CDATA[ <b>&]]> c <![CDATA[]]>d </a>", "<a>|&lt;b&gt;&amp; c d|</a>|"},
      {"<a>1<![CDATA[2]]><!--3-->4</a>", "<a>|<!--3-->|12|4|</a>|"},
      {"<a><![CDATA[x", "<a>|x|</a>|"},
      {"<a checked x='1'/>", "<a x=\"1\"/>|"},
      {"<a x=1 y='2'/>", "<a y=\"2\"/>|"},
      {"<a x='1'y=\"2\"/>", "<a x=\"1\" y=\"2\"/>|"},
      {"<a x=\"1><b/>", "<a>|~<b/>|</a>|"},  // never closed: the tag ends at the next ">"
      {"<a \"\"/ =\"1\"/>", "<a =\"1\"/>|"},
      {"<a x='1", "<a/>|"},
      {"<a", "<a/>|"},
      {"<a></b>", "<a/>|"},
  };
  for (const Row& row : kRows) EXPECT_EQ(readAs(row.text, true), row.reads) << row.text;
}

struct FailedRow {
  std::string_view text;
  XmlLoadStatus status;
  uint64_t line;
  uint64_t column;
};

TEST(XmlReader, WithoutAnElementTheDocumentIsAnEmptyRootAndThePlaceIsTold) {
  constexpr FailedRow kRows[] = {
      {"", XmlLoadStatus::empty, 1, 1},
      {"\xEF\xBB\xBF", XmlLoadStatus::empty, 1, 1},
      {"x", XmlLoadStatus::noElement, 1, 1},
      {"\r\n\n  x <", XmlLoadStatus::noElement, 3, 3},
      {"\r\r <", XmlLoadStatus::noElement, 3, 2},
      {"<!--1-->\r\n</a>", XmlLoadStatus::noElement, 2, 1},
      {"<?xml version=\"1.0\"?>\n\n<!-- -->\n", XmlLoadStatus::noElement, 4, 1},
      {"\n<!-- never closed <a/>", XmlLoadStatus::noElement, 2, 1},
      {"\n <![CDATA[<a/>]]>", XmlLoadStatus::noElement, 2, 11},
      {"<>", XmlLoadStatus::noElement, 1, 1},
  };
  for (const FailedRow& row : kRows) {
    for (const bool lenient : {false, true}) {
      XmlDocument document;
      const XmlLoadResult result = document.Load(row.text, XmlLoadMode::text, {lenient});
      EXPECT_EQ(result.status, row.status) << row.text;
      EXPECT_EQ(result.place.line, row.line) << row.text;
      EXPECT_EQ(lenient ? row.column : result.place.column, row.column) << row.text;
      EXPECT_EQ(document.GetRootElement().GetElementName(), "root");
      EXPECT_EQ(document.GetHeader().comments.size(), 0U);
      EXPECT_EQ(readAs(row.text, lenient), "<root/>|");
    }
  }
}

// The window through which a file is read is moved and widened while tags and texts of every length
// cross its end.
TEST(XmlReader, TheWindowShowsNowhere) {
  std::string text = "<?xml version=\"1.0\"?><!--" + std::string(70, 'c') +
                     "--><!DOCTYPE r [<!ENTITY a \">\">]><r>";
  for (size_t i = 0; i < 40; ++i) {
    text += "<e" + std::string(i % 7, 'n') + " a=\"" + std::string(i, 'v') + "\" bb = \"2\">";
    text += std::string(i * 3 % 50, 't') + " > <![CDATA[" + std::string(i, '>') + "]]>";
    text +=
        "<!--" + std::string(i * 5 % 60, '>') + "--><x/></e><?p " + std::string(i % 30, '>') + "?>";
  }
  text += "</r><!--after-->";
  for (const bool lenient : {false, true}) {
    std::string expected;
    for (const size_t window :
         {size_t{3}, size_t{4}, size_t{7}, size_t{16}, size_t{61}, size_t{5000}}) {
      XmlTree tree;
      tree.text.open();
      XmlOutside outside;
      std::string_view rest = text;
      const XmlSource source{[](void* from, char* to, size_t size) {
                               auto& view = *static_cast<std::string_view*>(from);
                               // Hands out less than asked for, as a pipe does.
                               const size_t count = std::min({size, view.size(), size_t{5}});
                               view.copy(to, count);
                               view.remove_prefix(count);
                               return count;
                             },
                             &rest};
      tree.root = readXml(tree, source, window, {lenient}, outside);
      tree.text.seal();
      ASSERT_NE(tree.root, kNoRow);
      EXPECT_EQ(outside.comments.size(), 2U);
      EXPECT_EQ(outside.declaration, "<?xml version=\"1.0\"?>");
      XmlDocument document;
      document.SetRootElement(XmlElement(&tree, tree.root));
      std::string saved;
      ASSERT_EQ(document.saveText(saved), 1);
      if (expected.empty()) expected = saved;
      EXPECT_EQ(saved, expected) << window;
    }
    EXPECT_GT(expected.size(), text.size() / 2);
  }
}

// Neither the stack nor the time may follow what a file nests or leaves open.
TEST(XmlReader, AMillionOfAnythingStaysLinear) {
  constexpr size_t kMany = 1000 * 1000;
  const auto many = [](std::string_view piece) {
    std::string text;
    for (size_t i = 0; i < kMany; ++i) text += piece;
    return text;
  };
  for (const bool lenient : {false, true}) {
    XmlDocument document;
    ASSERT_TRUE(document.Load(many("<a>"), XmlLoadMode::text, {lenient}));
    EXPECT_EQ(document.GetRootElement().Query("? == \"a\"").size(), kMany);
    EXPECT_EQ(document.GetRootElement().GetSubtreeNum(), kMany);
    std::string text;
    EXPECT_EQ(document.saveText(text), 0) << "a terabyte of tabs";
    document.GetRootElement().RemoveAllElements();
    EXPECT_EQ(document.saveText(text), 1);
    for (const char* piece :
         {"<?x ", "<!-- ", "<!DOCTYPE [' ", "<![CDATA[ ", "<a b=\"", "<a b='", "&#",
          "<a>&#65;<![CDATA[x]]></a>", "<b>t<!--c--></b>", "<", ">", "\"", "</a>"}) {
      document.Load("<r>" + many(piece), XmlLoadMode::text, {lenient});
      EXPECT_EQ(document.GetRootElement().GetElementName(), "r") << piece;
    }
  }
}

}  // namespace
}  // namespace vgps
