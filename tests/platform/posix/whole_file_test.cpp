#include "files/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/library/library_world.h"

// Links, pipes and permissions, which a file that is written anew must not lose.
namespace vgps {
namespace {

namespace fs = std::filesystem;

TEST(WholeFile, BehindALinkTheRealFileBecomesAnother) {
  const TestFolder folder;
  fs::create_directories(folder / "real");
  putFile(folder / "real/tracks.xml", "old");
  const struct {
    const char* link;
    const char* target;
  } rows[] = {
      {"near.xml", "real/tracks.xml"},
      {"far.xml", "near.xml"},
      {"fresh.xml", "real/fresh.xml"},  // which is not there yet
  };
  for (const auto& row : rows) {
    fs::create_symlink(row.target, folder / row.link);
    EXPECT_TRUE(writeWholeFile(folder / row.link, row.link)) << row.link;
    EXPECT_TRUE(fs::is_symlink(folder / row.link)) << row.link;
    EXPECT_EQ(fileBytes(folder / row.target), row.link);
    EXPECT_TRUE(isSameFile(folder / row.link, folder / row.target));
  }
  EXPECT_EQ(fileBytes(folder / "real/tracks.xml"), "far.xml");
  EXPECT_EQ(filesIn(folder / "real").size(), 2U) << "nothing is left beside";
  fs::create_symlink("round", folder / "round");
  EXPECT_FALSE(writeWholeFile(folder / "round", "x"));
  EXPECT_EQ(writeFreeFile(folder / "round", "x"), RenameResult::taken);
}

TEST(WholeFile, WhatIsNoRegularFileStays) {
  const TestFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink("pipe", folder / "link");
  for (const std::string& path : {pipe, folder / "link"}) {
    EXPECT_FALSE(writeWholeFile(path, "x"));
    EXPECT_EQ(writeFreeFile(path, "x"), RenameResult::taken);
  }
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"link", "pipe"}));
}

TEST(WholeFile, PermissionsStay) {
  const TestFolder folder;
  const std::string path = folder / "secret.xml";
  putFile(path, "old");
  for (const mode_t mode : {0600U, 0640U, 0666U}) {
    ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    EXPECT_TRUE(writeWholeFile(path, "new"));
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, mode);
  }
}

TEST(WholeFile, FilesThatAreNotThereYetCanBeTheSame) {
  const TestFolder folder;
  fs::create_directories(folder / "d");
  putFile(folder / "there", "x");
  fs::create_hard_link(folder / "there", folder / "d/there");
  fs::create_symlink("d/a", folder / "link");
  const struct {
    const char* a;
    const char* b;
    bool same;
  } rows[] = {
      {"a", "d/../a", true},       {"link", "d/a", true},      {"a", "d/a", false},
      {"there", "a", false},       {"there", "d/there", true}, {"a", "b", false},
      {"none/a", "none/a", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(isSameFile(folder / row.a, folder / row.b), row.same) << row.a << row.b;
  }
}

}  // namespace
}  // namespace vgps
