#include <sys/stat.h>

#include <thread>

#include "Workplace.h"

namespace {

const std::string kOld = "old content, longer than the new one by far: 0123456789";
const std::string kNew = "<a/>";

/// What happens to what stands at the place of OUT already.
class Overwrite : public Workplace {
 protected:
  void SetUp() override { writeFile("in.xml", "<a/>"); }

  Result convert(const std::string& out, const ToolProcess::Arguments& options = {},
                 const std::function<void()>& beforeExec = {}) {
    ToolProcess::Arguments arguments = {"convert", "--no-declaration", "in.xml", out};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, "", beforeExec);
  }

  Result force(const std::string& out, const std::function<void()>& beforeExec = {}) {
    return convert(out, {"--force"}, beforeExec);
  }

  static Result refused(const std::string& name) {
    return {2, "", "tavrin: " + name + ": already exists; --force replaces it\n"};
  }

  void makeFile(const std::string& name, unsigned mode) {
    writeFile(name, kOld);
    require(chmod(path(name).c_str(), mode), "chmod");
  }

  ino_t inodeOf(const std::string& name) const {
    struct stat status {};
    require(lstat(path(name).c_str(), &status), "lstat");
    return status.st_ino;
  }
};

}  // namespace

TEST_F(Overwrite, IsRefused) {
  writeFile("out.xml", kOld);
  EXPECT_EQ(convert("out.xml"), refused("out.xml"));
  EXPECT_EQ(convert("./out.xml"), refused("./out.xml"));
  EXPECT_EQ(convert("in.xml"), refused("in.xml"));
  EXPECT_EQ(readFile("out.xml"), kOld);
  EXPECT_EQ(files(), (Names{"in.xml", "out.xml"}));
}

TEST_F(Overwrite, IsRefusedForAnEmptyFile) {
  writeFile("out.xml", "");
  EXPECT_EQ(convert("out.xml"), refused("out.xml"));
  EXPECT_EQ(readFile("out.xml"), "");
}

TEST_F(Overwrite, IsRefusedBeforeAnyWork) {
  writeFile("out.xml", kOld);
  EXPECT_EQ(run({"convert", "missing.xml", "out.xml"}), refused("out.xml"));
  EXPECT_EQ(ToolProcess({"convert", "-", "out.xml"}, directory_).waitWithOpenInput(),
            refused("out.xml"));
}

TEST_F(Overwrite, IsDoneByForce) {
  writeFile("out.xml", kOld);
  EXPECT_EQ(force("out.xml"), silent(0));
  EXPECT_EQ(readFile("out.xml"), kNew);
  EXPECT_EQ(force("out.xml"), silent(0));
  EXPECT_EQ(readFile("out.xml"), kNew);
  EXPECT_EQ(files(), (Names{"in.xml", "out.xml"}));
}

TEST_F(Overwrite, NeedsNothingToBeThereByForce) {
  EXPECT_EQ(force("out.xml"), silent(0));
  EXPECT_EQ(readFile("out.xml"), kNew);
}

TEST_F(Overwrite, MayReplaceTheDocumentThatIsRead) {
  writeFile("in.xml", "<a >" + std::string(3000000, 'x') + "</a >");
  EXPECT_EQ(force("in.xml"), silent(0));
  EXPECT_EQ(readFile("in.xml"), "<a>" + std::string(3000000, 'x') + "</a>");
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(Overwrite, IsNotForcedOnADocumentThatFails) {
  writeFile("in.xml", "<a>");
  writeFile("out.xml", kOld);
  EXPECT_EQ(force("out.xml"),
            (Result{1, "", "in.xml:1:4: no element found: <a> of line 1 is not closed\n"}));
  EXPECT_EQ(readFile("out.xml"), kOld);
  EXPECT_EQ(files(), (Names{"in.xml", "out.xml"}));
}

// --- Modes ---

TEST_F(Overwrite, GivesANewFileTheModeThatIsLeftByTheMask) {
  const struct { unsigned mask, mode; } cases[] = {{0, 0666}, {022, 0644}, {077, 0600}, {0777, 0}};
  for (const auto& [mask, mode] : cases) {
    SCOPED_TRACE(mask);
    EXPECT_EQ(convert("out.xml", {}, [bits = mask] { umask(bits); }), silent(0));
    EXPECT_EQ(modeOf("out.xml"), mode);
    std::filesystem::remove(path("out.xml"));
  }
}

TEST_F(Overwrite, KeepsTheModeOfTheFileThatIsReplaced) {
  for (const unsigned mode : {0600U, 0640U, 0666U, 0777U, 0400U, 0U}) {
    SCOPED_TRACE(mode);
    makeFile("out.xml", mode);
    EXPECT_EQ(force("out.xml", [] { umask(022); }), silent(0));
    EXPECT_EQ(modeOf("out.xml"), mode);
    std::filesystem::remove(path("out.xml"));
  }
}

TEST_F(Overwrite, DoesNotLetANewContentRunAsAnotherUser) {
  makeFile("out.xml", 06755);
  EXPECT_EQ(force("out.xml"), silent(0));
  EXPECT_EQ(modeOf("out.xml"), 0755U);
}

// --- Links ---

TEST_F(Overwrite, IsRefusedThroughASymbolicLink) {
  writeFile("target.xml", kOld);
  std::filesystem::create_symlink("target.xml", path("link.xml"));
  EXPECT_EQ(convert("link.xml"), refused("link.xml"));
  EXPECT_EQ(readFile("target.xml"), kOld);
  EXPECT_EQ(files(), (Names{"in.xml", "link.xml", "target.xml"}));
}

TEST_F(Overwrite, IsRefusedForALinkThatLeadsNowhere) {
  std::filesystem::create_symlink("target.xml", path("link.xml"));
  EXPECT_EQ(convert("link.xml"), refused("link.xml"));
  EXPECT_EQ(files(), (Names{"in.xml", "link.xml"}));
}

TEST_F(Overwrite, ReplacesTheTargetOfASymbolicLinkByForce) {
  std::filesystem::create_directory(path("elsewhere"));
  makeFile("elsewhere/target.xml", 0640);
  std::filesystem::create_symlink("target.xml", path("elsewhere/second"));
  std::filesystem::create_symlink("elsewhere/second", path("first"));
  EXPECT_EQ(force("first"), silent(0));
  EXPECT_EQ(std::filesystem::read_symlink(path("first")), "elsewhere/second");
  EXPECT_EQ(std::filesystem::read_symlink(path("elsewhere/second")), "target.xml");
  EXPECT_FALSE(std::filesystem::is_symlink(path("elsewhere/target.xml")));
  EXPECT_EQ(readFile("elsewhere/target.xml"), kNew);
  EXPECT_EQ(modeOf("elsewhere/target.xml"), 0640U);
  EXPECT_EQ(files(), (Names{"elsewhere", "first", "in.xml"}));
}

TEST_F(Overwrite, FollowsAnAbsoluteLinkByForce) {
  writeFile("target.xml", kOld);
  std::filesystem::create_directory(path("links"));
  std::filesystem::create_symlink(path("target.xml"), path("links/link"));
  EXPECT_EQ(force("links/link"), silent(0));
  EXPECT_EQ(readFile("target.xml"), kNew);
  EXPECT_TRUE(std::filesystem::is_symlink(path("links/link")));
}

TEST_F(Overwrite, MakesTheTargetOfALinkThatLeadsNowhereByForce) {
  std::filesystem::create_symlink("target.xml", path("link.xml"));
  EXPECT_EQ(force("link.xml"), silent(0));
  EXPECT_EQ(readFile("target.xml"), kNew);
  EXPECT_TRUE(std::filesystem::is_symlink(path("link.xml")));
  EXPECT_EQ(files(), (Names{"in.xml", "link.xml", "target.xml"}));
}

TEST_F(Overwrite, GivesUpOnLinksInACircle) {
  std::filesystem::create_symlink("b", path("a"));
  std::filesystem::create_symlink("a", path("b"));
  const Result failed = {2, "", "tavrin: a: Too many levels of symbolic links\n"};
  EXPECT_EQ(convert("a"), failed);
  EXPECT_EQ(force("a"), failed);
  EXPECT_EQ(files(), (Names{"a", "b", "in.xml"}));
}

TEST_F(Overwrite, LeavesOtherNamesOfTheOldFileAlone) {
  writeFile("out.xml", kOld);
  std::filesystem::create_hard_link(path("out.xml"), path("other.xml"));
  EXPECT_EQ(force("out.xml"), silent(0));
  EXPECT_EQ(readFile("out.xml"), kNew);
  EXPECT_EQ(readFile("other.xml"), kOld);
}

// --- What is not a regular file ---

TEST_F(Overwrite, WritesToADeviceAndLeavesItInPlace) {
  for (const bool forced : {false, true}) {
    SCOPED_TRACE(forced);
    EXPECT_EQ(forced ? force("/dev/null") : convert("/dev/null"), silent(0));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
  }
}

TEST_F(Overwrite, WritesToADeviceThroughALink) {
  std::filesystem::create_symlink("/dev/null", path("link"));
  EXPECT_EQ(convert("link"), silent(0));
  EXPECT_EQ(force("link"), silent(0));
  EXPECT_EQ(std::filesystem::read_symlink(path("link")), "/dev/null");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Overwrite, WritesIntoANamedPipe) {
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  const ino_t inode = inodeOf("pipe");
  for (const bool forced : {false, true}) {
    SCOPED_TRACE(forced);
    std::string received;
    std::thread reader([&] { received = readFile("pipe"); });
    EXPECT_EQ(forced ? force("pipe") : convert("pipe"), silent(0));
    reader.join();
    EXPECT_EQ(received, kNew);
    EXPECT_EQ(inodeOf("pipe"), inode);
  }
  EXPECT_EQ(files(), (Names{"in.xml", "pipe"}));
}

TEST_F(Overwrite, WritesToStandardOutputByItsDeviceName) {
  int ends[2];
  require(pipe2(ends, O_CLOEXEC), "pipe2");
  EXPECT_EQ(convert("/dev/stdout", {}, [&] { dup2(ends[1], STDOUT_FILENO); }), silent(0));
  close(ends[1]);
  char text[16];
  EXPECT_EQ(std::string(text, static_cast<std::size_t>(read(ends[0], text, sizeof text))), kNew);
  close(ends[0]);
}

TEST_F(Overwrite, IsNotPossibleForADirectory) {
  std::filesystem::create_directory(path("directory"));
  for (const std::string name : {"directory", "directory/", ".", "/"}) {
    const Result failed = {2, "", "tavrin: " + name + ": Is a directory\n"};
    EXPECT_EQ(convert(name), failed);
    EXPECT_EQ(force(name), failed);
  }
  EXPECT_EQ(files(), (Names{"directory", "in.xml"}));
}
