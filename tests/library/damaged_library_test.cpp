#include <gtest/gtest.h>

#include "library/library_index.h"
#include "tests/library/library_world.h"
#include "track/track_xml.h"

// Library documents that are missing, strange or broken, and indexes that lie.
namespace vgps {
namespace {

constexpr const char* kDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n";

std::string element(const char* name, int mark) {
  const std::string m = std::to_string(mark);
  return "<t n=\"" + std::string(name) + "\"><p x=\"1\" y=\"2\" z=\"3\" m=\"" + m + "\"/></t>";
}

class DocumentLibrary : public testing::Test {
 protected:
  LibraryState open() { return library_.open(path_); }
  LibraryState openWith(std::string_view bytes) {
    putFile(path_, bytes);
    return open();
  }

  TestFolder folder_;
  const std::string path_ = folder_ / "tracks.xml";
  const std::string bad_ = folder_ / "tracks.bad";
  TrackLibrary library_;
};

TEST_F(DocumentLibrary, IsWrittenAsTheDocumentWouldBe) {
  EXPECT_EQ(open(), LibraryState::missing);
  Track track = walk("A & B", 2), unnamed = walk("", 1);
  ASSERT_EQ(library_.add(track, {}, kAddedAt), LibraryResult::done);
  ASSERT_EQ(library_.add(unnamed, {}, kAddedAt), LibraryResult::done);
  XmlDocument document;
  XmlElement tracks = document.GetRootElement().AddElement("tracks");
  tracks.AddElement(trackElement(document, track, {}, "A & B"));
  tracks.AddElement(trackElement(document, unnamed, {}, "Track 2"));
  std::string expected;
  document.saveText(expected);
  EXPECT_EQ(fileBytes(path_), expected);
}

struct Found {
  const char* what;
  std::string bytes;
  LibraryState state;
  const char* tracks;  // after one named "New" was added; null when that must be refused
};

TEST_F(DocumentLibrary, WhatMayLieThere) {
  const std::string a = element("A", 1), b = element("B", 2);
  const Found rows[] = {
      {"empty", "", LibraryState::missing, "New 9"},
      {"blanks", "\r\n\r\n", LibraryState::missing, "New 9"},
      {"only the declaration", kDeclaration, LibraryState::missing, "New 9"},
      {"an empty root", "<root/>", LibraryState::whole, "New 9"},
      {"an empty root with attributes", "<root a=\"1\" />", LibraryState::whole, "New 9"},
      {"no tracks yet", "<root><other/></root>", LibraryState::whole, "New 9"},
      {"empty tracks", "<root><tracks /></root>", LibraryState::whole, "New 9"},
      {"a byte order mark", "\xEF\xBB\xBF<root><tracks>" + a + "</tracks></root>",
       LibraryState::whole, "A 1 | New 9"},
      {"two lists", "<root><tracks>" + a + "</tracks><tracks>" + b + "</tracks></root>",
       LibraryState::whole, "A 1 | B 2 | New 9"},
      {"comments", "<!-- a --><root><tracks><!-- <t> -->" + a + "<!-- b --></tracks></root>",
       LibraryState::whole, "A 1 | New 9"},
      {"a document type",
       "<!DOCTYPE root [<!ENTITY a \"b\">]><root><tracks>" + a + "</tracks></root>",
       LibraryState::whole, "A 1 | New 9"},

      {"another program's file", "<gpx><trk/></gpx>", LibraryState::notALibrary, nullptr},
      {"settings", "<root><cfg><gps port=\"COM3\"/></cfg></root>", LibraryState::notALibrary,
       nullptr},
      {"settings and tracks", "<root><tracks>" + a + "</tracks><Cfg/></root>",
       LibraryState::notALibrary, nullptr},
      {"a single track", "<t><p x=\"1\" y=\"2\"/></t>", LibraryState::notALibrary, nullptr},

      {"noise", "\x01\x02 noise", LibraryState::damaged, "New 9"},
      {"zeroes", std::string(5000, '\0'), LibraryState::damaged, "New 9"},
      {"cut in a point", "<root><tracks>" + a + "<t n=\"B\"><p x=\"1\" y=\"2\" m=\"2\"/><p x=",
       LibraryState::damaged, "A 1 | B 2 | New 9"},
      {"cut behind a track", "<root><tracks>" + a, LibraryState::damaged, "A 1 | New 9"},
      {"an end tag lost",
       "<root><tracks><t n=\"A\"><p x=\"1\" y=\"2\" m=\"1\"/>" + b + "</tracks></root>",
       LibraryState::damaged, "A 1 | B 2 | New 9"},
      {"a start tag lost",
       "<root><tracks>" + a + "=t><p x=\"1\" y=\"2\" m=\"5\"/></t>" + b + "</tracks></root>",
       LibraryState::damaged, "A 1 | Track 2 5 | B 2 | New 9"},
      {"the list's tag lost", "<root>" + a + b + "</tracks></root>", LibraryState::damaged,
       "A 1 | B 2 | New 9"},
      {"the start lost", "\"/>" + a + b + "</tracks></root>", LibraryState::damaged,
       "A 1 | B 2 | New 9"},
      {"zeroes in a track",
       "<root><tracks><t n=\"A\"><p x=\"1\" y=\"2\" m=\"1\"/>" + std::string(600, '\0') +
           "<p x=\"1\" y=\"2\" m=\"3\"/></t>" + b + "</tracks></root>",
       LibraryState::damaged, "A 1,3 | B 2 | New 9"},
      {"a point without a number",
       "<root><tracks><t n=\"A\"><p x=\"\" y=\"2\"/>"
       "<p x=\"1\" y=\"2\" m=\"1\"/></t></tracks></root>",
       LibraryState::damaged, "A 1 | New 9"},
      {"a tag in a tag",
       "<root><tracks><t n=\"A\"><p x=\"1\" <p x=\"1\" y=\"2\" m=\"1\"/></t>" + b +
           "</tracks></root>",
       LibraryState::damaged, "A 1 | B 2 | New 9"},
  };
  for (const Found& row : rows) {
    SCOPED_TRACE(row.what);
    for (const std::string& name : folder_.names()) removeFile(folder_ / name);
    library_ = TrackLibrary();
    EXPECT_EQ(openWith(row.bytes), row.state);
    EXPECT_EQ(library_.message().empty(),
              row.state == LibraryState::whole || row.state == LibraryState::missing);
    const LibraryResult added = addWalk(library_, "New", 1, 9);
    if (row.tracks == nullptr) {
      EXPECT_EQ(added, LibraryResult::notALibrary);
      EXPECT_EQ(fileBytes(path_), row.bytes);
      EXPECT_TRUE(library_.tracks().empty());
      continue;
    }
    EXPECT_EQ(added, LibraryResult::done);
    EXPECT_EQ(contentsOf(library_), row.tracks);
    TrackLibrary again;
    EXPECT_EQ(again.open(path_), LibraryState::whole);
    EXPECT_EQ(contentsOf(again), row.tracks);
    const bool damaged = row.state == LibraryState::damaged;
    EXPECT_EQ(library_.backupPath(), damaged ? bad_ : "");
    EXPECT_EQ(fileBytes(bad_), damaged ? row.bytes : "");
  }
}

// What other programs wrote is no damage, and every byte of it is there after any change.
TEST_F(DocumentLibrary, WhatOthersWroteSurvivesEveryChange) {
  const std::string track =
      "<t n=\"A\" color=\"red\"><!-- a > b --><meta k=\"1\">text &amp; <b>more</b></meta>"
      "<p x=\"1\" y=\"2\" m=\"1\" hr=\"130\"/>"
      "<p x=\"1.1\" y=\"2\" m=\"2\" gx:id='&lt;' ><ext><n>7</n><p/></ext>"
      "<ass><n n=\"Item 1\" f=\"f.jpg\"/></ass><!-- c --></p>"
      "<p x=\"0\" y=\"0\" hr=\"0\"/>"
      "<p x=\"1.2\" y=\"2\"\r\n\ttime=\"05-07-2010 09:03:00\" m=\"3\" hr=\"132\"/></t>";
  const std::string other = "<x><y/><t n=\"B\"><p x=\"1\" y=\"2\" m=\"9\" hr=\"99\"/></t>text</x>";
  const std::string document = "<root v=\"2\"><!-- 1 --><before/><tracks c=\"d\"><!-- 2 -->" +
                               track + "<note>mine</note></tracks>" + other + "</root>";
  using Change = std::function<LibraryResult(TrackLibrary&)>;
  struct Row {
    const char* what;
    Change change;
    const char* tracks;
    std::vector<std::string> pairs;  // stand in this order
  };
  const std::vector<std::string> inOrder = {"m=\"1\" hr=\"130\"", "<n>7</n>", "m=\"3\" hr=\"132\""};
  const Row rows[] = {
      {"add", [](auto& l) { return addWalk(l, "C", 1, 5); }, "A 1,2,3 | B 9 | C 5", {track, other}},
      {"rename", [](auto& l) { return l.rename(0, "Z"); }, "Z 1,2,3 | B 9", {"hr=\"0\"", other}},
      {"reverse",
       [](auto& l) { return l.reverse(0, {}); },
       "A 3,2,1 | B 9",
       {"time=\"05-07-2010 09:03:00\" m=\"3\" hr=\"132\"", "<n>7</n>", "m=\"1\" hr=\"130\"",
        other}},
      {"split", [](auto& l) { return l.split(0, 2, {}); }, "A 1,2 | Split 1 3 | B 9", inOrder},
      {"join",
       [](auto& l) { return l.join(1, 0, {}); },
       "B 9,1,2,3",
       {"m=\"9\" hr=\"99\"", "m=\"1\" hr=\"130\"", "<n>7</n>", "m=\"3\" hr=\"132\""}},
      {"remove", [](auto& l) { return l.remove(1); }, "A 1,2,3", {track}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    for (const std::string& name : folder_.names()) removeFile(folder_ / name);
    library_ = TrackLibrary();
    ASSERT_EQ(openWith(document), LibraryState::whole);
    ASSERT_EQ(row.change(library_), LibraryResult::done);
    const std::string after = fileBytes(path_);
    for (const char* part :
         {"<root v=\"2\"><!-- 1 --><before/><tracks c=\"d\">", "<!-- 2 -->", "color=\"red\"",
          "<!-- a > b -->", "<x><y/>", "<meta k=\"1\">text &amp; <b>more</b></meta>",
          "<ext><n>7</n><p/></ext>", "<!-- c -->", "<note>mine</note></tracks>", "text</x>",
          "f=\"f.jpg\"", " gx:id='&lt;'"}) {
      EXPECT_NE(after.find(part), std::string::npos) << part << "\n" << after;
    }
    size_t at = 0;
    for (const std::string& part : row.pairs) {
      const size_t found = after.find(part, at);
      ASSERT_NE(found, std::string::npos) << part << "\n" << after;
      at = found + part.size();
    }
    EXPECT_FALSE(fileExists(bad_));
    TrackLibrary again;
    EXPECT_EQ(again.open(path_), LibraryState::whole) << after;
    EXPECT_EQ(contentsOf(again), row.tracks) << after;
  }
}

TEST_F(DocumentLibrary, EveryDamagedDocumentIsKept) {
  const std::string first = "<root><tracks>" + element("A", 1);
  const std::string second = "<root><tracks>" + element("B", 2);
  openWith(first);
  ASSERT_EQ(library_.rename(0, "A2"), LibraryResult::done);
  openWith(second);
  ASSERT_EQ(library_.reverse(0, {}), LibraryResult::done);
  EXPECT_EQ(library_.backupPath(), folder_ / "tracks-2.bad");
  EXPECT_EQ(fileBytes(bad_), first);
  EXPECT_EQ(fileBytes(folder_ / "tracks-2.bad"), second);
}

TEST_F(DocumentLibrary, WithoutACopyNothingIsWrittenOverADamagedOne) {
  const std::string bytes = "<root><tracks>" + element("A", 1);
  putFile(path_, bytes);
  for (int steps = 0; steps < 30; ++steps) {
    const DyingDisk dying(steps);
    TrackLibrary library(dying.disk());
    library.open(path_);
    const LibraryResult result = addWalk(library, "New", 1, 9);
    if (!fileExists(bad_)) {
      EXPECT_NE(result, LibraryResult::done);
      EXPECT_EQ(fileBytes(path_), bytes) << steps;
    } else {
      EXPECT_EQ(fileBytes(bad_), bytes);
    }
    EXPECT_TRUE(contentsAt(path_).starts_with("A 1")) << steps;
  }
  EXPECT_TRUE(fileExists(bad_));
}

TEST_F(DocumentLibrary, AFlippedBitCostsOnePointAtMost) {
  open();
  ASSERT_EQ(addWalk(library_, "A", 2), LibraryResult::done);
  ASSERT_EQ(addWalk(library_, "B", 2, 11), LibraryResult::done);
  const std::string whole = fileBytes(path_);
  for (size_t bit = 0; bit < whole.size() * 8; bit += 3) {
    std::string bytes = whole;
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    TrackLibrary library(DyingDisk(0).disk());  // no index is written
    putFile(path_, bytes);
    library.open(path_);
    uint64_t points = 0;
    for (const TrackSummary& track : library.tracks()) points += track.points;
    if (library.state() == LibraryState::notALibrary) {
      EXPECT_LT(bit / 8, 80U) << bytes;  // nobody can know a root of another name
    } else {
      EXPECT_GE(points, 3U) << bit << "\n" << bytes;
    }
  }
}

// The index says what it likes: the document and what is done to it stay right.
TEST_F(DocumentLibrary, AnIndexIsNeverBelievedTooMuch) {
  const std::string indexPath = folder_ / "tracks.xml.index";
  open();
  addWalk(library_, "A", 3), addWalk(library_, "B", 4, 11), addWalk(library_, "C", 2, 21);
  const std::string good = fileBytes(indexPath);
  const std::string document = fileBytes(path_);
  LibraryIndex index;
  ASSERT_TRUE(readIndex(good, index));
  EXPECT_EQ(indexText(index), good);
  using Lie = std::function<void(LibraryIndex&)>;
  const Lie lies[] = {
      [](LibraryIndex& i) { i.entries[0].end -= 5; },
      [](LibraryIndex& i) { i.entries[1].begin += 1; },
      [](LibraryIndex& i) { i.entries[1].blanksBegin -= 4; },
      [](LibraryIndex& i) { i.entries[2].end = i.document.size * 2; },
      [](LibraryIndex& i) { i.entries.erase(i.entries.begin()); },
      [](LibraryIndex& i) { std::swap(i.entries[0], i.entries[1]); },
      [](LibraryIndex& i) { i.entries[2] = i.entries[1]; },
      [](LibraryIndex& i) { i.endPlace -= 3; },
      [](LibraryIndex& i) { i.endPlace += 3; },
      [](LibraryIndex& i) { i.endPlace = i.document.size; },
      [](LibraryIndex& i) { i.document.size -= 1; },
      [](LibraryIndex& i) { i.document.time += 1; },
      [](LibraryIndex& i) { i.entries[0].summary.name = "Lie"; },
  };
  FileStamp stamp;
  ASSERT_TRUE(fileStamp(path_, stamp));
  for (size_t lie = 0; lie < std::size(lies); ++lie) {
    for (int change = 0; change < 4; ++change) {
      SCOPED_TRACE(std::to_string(lie) + " " + std::to_string(change));
      putFile(path_, document);
      LibraryIndex lying = index;
      ASSERT_TRUE(fileStamp(path_, lying.document));
      lies[lie](lying);
      putFile(indexPath, indexText(lying));
      TrackLibrary library;
      library.open(path_);
      const RecordingOptions options;
      const auto once = [&] {
        switch (change) {
          case 0: return addWalk(library, "D", 1, 31);
          case 1: return library.rename(1, "Z");
          case 2: return library.remove(2);
          default: return library.join(0, 1, options);
        }
      };
      const LibraryResult result = once();
      removeFile(indexPath);
      const std::string after = contentsAt(path_);
      if (result != LibraryResult::done) {
        EXPECT_EQ(fileBytes(path_), document);
        continue;
      }
      // Nothing but what was changed has changed.
      for (const char* points : {" 1,2,3", " 11,12,13,14", " 21,22"}) {
        if (change == 2 || change == 3) break;
        EXPECT_NE(after.find(points), std::string::npos) << after;
      }
      TrackLibrary again;
      EXPECT_EQ(again.open(path_), LibraryState::whole) << fileBytes(path_);
    }
  }
  for (size_t at = 0; at < good.size(); at += 7) {
    std::string bytes = good;
    bytes[at] = static_cast<char>(bytes[at] ^ 0x10);
    LibraryIndex read;
    EXPECT_FALSE(readIndex(bytes, read)) << at;
    EXPECT_FALSE(readIndex(std::string_view(good).substr(0, at), read)) << at;
  }
}

// A person's file of such a name is theirs.
TEST_F(DocumentLibrary, AFileThatIsNoIndexStays) {
  for (const char* name : {"tracks.index", "tracks.lock", "tracks.xml.index"}) {
    putFile(folder_ / name, "mine");
  }
  open();
  ASSERT_EQ(addWalk(library_, "A", 2), LibraryResult::done);
  TrackLibrary again;
  EXPECT_EQ(again.open(path_), LibraryState::whole);
  for (const char* name : {"tracks.index", "tracks.lock", "tracks.xml.index"}) {
    EXPECT_EQ(fileBytes(folder_ / name), "mine") << name;
  }
}

TEST(FolderLibrary, ADamagedFileIsKeptBeforeItIsWrittenOver) {
  const TestFolder folder;
  const std::string bytes = "<t><p x=\"1\" y=\"2\" m=\"1\"/><p x=\"1\"";
  putFile(folder / "A.XML", bytes);
  TrackLibrary library;
  EXPECT_EQ(library.open(folder.path()), LibraryState::damaged);
  EXPECT_NE(library.message().find(folder / "A.XML"), std::string::npos);
  ASSERT_EQ(addWalk(library, "B", 1, 9), LibraryResult::done);
  EXPECT_FALSE(fileExists(folder / "A.bad"));  // it was not written over
  ASSERT_EQ(library.reverse(0, {}), LibraryResult::done);
  EXPECT_EQ(fileBytes(folder / "A.bad"), bytes);
  EXPECT_EQ(library.refresh(), LibraryState::whole);
  EXPECT_EQ(contentsOf(library), "A 1 | B 9");
}

TEST(FolderLibrary, TheIndexFollowsTheFiles) {
  const TestFolder folder;
  {
    TrackLibrary library;
    library.open(folder.path());
    addWalk(library, "A", 3), addWalk(library, "B", 2, 11);
  }
  putFile(folder / "C.xml", element("inside", 5));
  removeFile(folder / "A.XML");
  putFile(folder / "B.XML", element("x", 6));
  EXPECT_EQ(contentsAt(folder.path()), "B 6 | C 5");
  putFile(folder / "tracks.index", "rubbish");
  EXPECT_EQ(contentsAt(folder.path()), "B 6 | C 5");
}

}  // namespace
}  // namespace vgps
