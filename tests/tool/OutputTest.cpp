#include <linux/audit.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <cstddef>
#include <thread>

#include "Workplace.h"

namespace {

/// What becomes of a document that cannot be written.
class Output : public Workplace {
 protected:
  void SetUp() override {
    writeFile("small.xml", "<a/>");
    writeFile("large.xml", "<a>" + std::string(3000000, 'x') + "</a>");
  }

  static Result failed(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }

  const Names before_ = {"large.xml", "small.xml"};
};

/// Long enough to tell the format from, which is when the work begins.
const std::string kBeginning = "<a>" + std::string(1000, 'x');

void giveUpWritingAnyFile() { prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE); }

void limitFilesTo100000Octets() {
  const rlimit limit = {100000, 100000};
  setrlimit(RLIMIT_FSIZE, &limit);
}

/// Makes one system call fail as it does on a file system, or a kernel, that lacks it.
void failSystemCall(unsigned number, unsigned error) {
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  sock_fprog program = {sizeof filter / sizeof *filter, filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
    _exit(126);
  }
}

}  // namespace

TEST_F(Output, ReportsAFullDevice) {
  for (const std::string in : {"small.xml", "large.xml"}) {
    SCOPED_TRACE(in);
    EXPECT_EQ(run({"convert", in, "/dev/full"}), failed("/dev/full: No space left on device"));
    EXPECT_EQ(run({"convert", in, "/dev/full", "--force"}),
              failed("/dev/full: No space left on device"));
    EXPECT_EQ(run({"convert", in}, "", [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
              failed("standard output: No space left on device"));
  }
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
  EXPECT_EQ(files(), before_);
}

TEST_F(Output, ReportsAPipeThatNobodyReads) {
  for (const std::string in : {"small.xml", "large.xml"}) {
    SCOPED_TRACE(in);
    int ends[2];
    require(pipe2(ends, O_CLOEXEC), "pipe2");
    close(ends[0]);
    EXPECT_EQ(run({"convert", in}, "", [&] { dup2(ends[1], STDOUT_FILENO); }), silent(2));
    close(ends[1]);
  }
}

TEST_F(Output, ReportsAStandardOutputThatIsClosed) {
  EXPECT_EQ(run({"convert", "small.xml"}, "", [] { close(STDOUT_FILENO); }),
            failed("standard output: Bad file descriptor"));
  EXPECT_EQ(run({"convert", "small.xml", "out.xml"}, "", [] { close(STDOUT_FILENO); }), silent(0));
}

TEST_F(Output, EndsTheWorkAsSoonAsItFails) {
  ToolProcess process({"convert", "-", "/dev/full"}, directory_);
  process.write("<a>" + std::string(3000000, 'x'));
  EXPECT_EQ(process.waitWithOpenInput(), failed("/dev/full: No space left on device"));
}

// Were its number free, the next file to be opened would get it, and what is meant for standard
// error with it.
TEST_F(Output, IsNotTakenForAStandardErrorThatIsClosed) {
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  std::string received;
  std::thread reader([&] { received = readFile("pipe"); });
  EXPECT_EQ(run({"convert", "-", "pipe"}, "<a>", [] { close(STDERR_FILENO); }), silent(1));
  reader.join();
  EXPECT_EQ(received, "");
}

// The document goes wrong behind the place where nothing more could be written.
TEST_F(Output, ReportsWhatWentWrongFirst) {
  EXPECT_EQ(run({"convert", "-", "/dev/full"}, "<a>" + std::string(3000000, 'x') + "</b>"),
            failed("/dev/full: No space left on device"));
  EXPECT_EQ(run({"convert", "-", "/dev/full"}, "<a></b>"),
            (Result{1, "", "-:1:6: mismatched tag: expected </a> of line 1\n"}));
}

TEST_F(Output, LeavesNothingBehindWhereAFileBecomesTooLarge) {
  const Result tooLarge = failed("out.xml: File too large");
  EXPECT_EQ(run({"convert", "large.xml", "out.xml"}, "", limitFilesTo100000Octets), tooLarge);
  EXPECT_EQ(files(), before_);
  writeFile("out.xml", "old");
  EXPECT_EQ(run({"convert", "--force", "large.xml", "out.xml"}, "", limitFilesTo100000Octets),
            tooLarge);
  EXPECT_EQ(readFile("out.xml"), "old");
  EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
}

TEST_F(Output, NeedsADirectoryToBeThere) {
  for (const std::string name : {"missing/out.xml", "missing/", "missing/two/out.xml"}) {
    EXPECT_EQ(run({"convert", "small.xml", name}), failed(name + ": No such file or directory"));
  }
  EXPECT_EQ(run({"convert", "small.xml", ""}), failed("\"\": No such file or directory"));
  EXPECT_EQ(run({"convert", "small.xml", "large.xml/out.xml"}),
            failed("large.xml/out.xml: Not a directory"));
  const std::string longName(300, 'n');
  // Of a long word the middle is left out: 200 characters remain, ": " among them.
  const std::string shown = std::string(99, 'n') + "..." + std::string(96, 'n');
  EXPECT_EQ(run({"convert", "small.xml", longName}), failed(shown + ": File name too long"));
  EXPECT_EQ(files(), before_);
}

TEST_F(Output, NeedsADirectoryThatMayBeWrittenTo) {
  std::filesystem::create_directory(path("directory"));
  writeFile("directory/old.xml", "old");
  std::filesystem::permissions(path("directory"), std::filesystem::perms{0555});
  EXPECT_EQ(run({"convert", "small.xml", "directory/out.xml"}, "", giveUpWritingAnyFile),
            failed("directory/out.xml: Permission denied"));
  EXPECT_EQ(run({"convert", "--force", "small.xml", "directory/old.xml"}, "", giveUpWritingAnyFile),
            failed("directory/old.xml: Permission denied"));
  EXPECT_EQ(readFile("directory/old.xml"), "old");
  std::filesystem::permissions(path("directory"), std::filesystem::perms{0755});
}

// A name may be as long as the file system allows; what it is called meanwhile is not longer.
TEST_F(Output, TakesTheLongestName) {
  const std::string name(255, 'n');
  EXPECT_EQ(run({"convert", "small.xml", name, "--no-declaration"}), silent(0));
  EXPECT_EQ(readFile(name), "<a/>");
}

// --- A file that comes to stand there while the work goes on ---

TEST_F(Output, DoesNotReplaceAFileThatAppearsMeanwhile) {
  ToolProcess process({"convert", "-", "out.xml"}, directory_);
  process.write(kBeginning);
  waitForFiles(3);
  writeFile("out.xml", "from elsewhere");
  process.write("</a>");
  EXPECT_EQ(process.wait(), failed("out.xml: already exists; --force replaces it"));
  EXPECT_EQ(readFile("out.xml"), "from elsewhere");
  EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
}

TEST_F(Output, ReplacesAFileThatAppearsMeanwhileByForce) {
  ToolProcess process({"convert", "--no-declaration", "--force", "-", "out.xml"}, directory_);
  process.write(kBeginning);
  waitForFiles(3);
  writeFile("out.xml", "from elsewhere");
  process.write("</a>");
  EXPECT_EQ(process.wait(), silent(0));
  EXPECT_EQ(readFile("out.xml"), kBeginning + "</a>");
  EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
}

TEST_F(Output, ReportsADirectoryThatAppearsMeanwhile) {
  ToolProcess process({"convert", "--force", "-", "out.xml"}, directory_);
  process.write(kBeginning);
  waitForFiles(3);
  std::filesystem::create_directory(path("out.xml"));
  process.write("</a>");
  EXPECT_EQ(process.wait(), failed("out.xml: Is a directory"));
  EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
}

TEST_F(Output, IsSafeOnFileSystemsWithoutAnExclusiveRename) {
  for (const unsigned error : {EINVAL, ENOSYS}) {
    SCOPED_TRACE(error);
    const auto withoutRename = [error] { failSystemCall(__NR_renameat2, error); };
    EXPECT_EQ(run({"convert", "--no-declaration", "small.xml", "out.xml"}, "", withoutRename),
              silent(0));
    EXPECT_EQ(readFile("out.xml"), "<a/>");
    EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
    std::filesystem::remove(path("out.xml"));

    ToolProcess process({"convert", "-", "out.xml"}, directory_, withoutRename);
    process.write(kBeginning);
    waitForFiles(3);
    writeFile("out.xml", "from elsewhere");
    process.write("</a>");
    EXPECT_EQ(process.wait(), failed("out.xml: already exists; --force replaces it"));
    EXPECT_EQ(readFile("out.xml"), "from elsewhere");
    EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
    std::filesystem::remove(path("out.xml"));
  }
}

TEST_F(Output, ReportsThatTheFileCannotBePutInItsPlace) {
  EXPECT_EQ(
      run({"convert", "small.xml", "out.xml"}, "", [] { failSystemCall(__NR_renameat2, EIO); }),
      failed("out.xml: Input/output error"));
  EXPECT_EQ(run({"convert", "small.xml", "out.xml"}, "", [] { failSystemCall(__NR_fsync, EIO); }),
            failed("out.xml: Input/output error"));
  EXPECT_EQ(files(), before_);
}

// A file is not to be seen under its name before it is complete.
TEST_F(Output, IsNotThereBeforeItIsComplete) {
  ToolProcess process({"convert", "--no-declaration", "-", "out.xml"}, directory_);
  process.write("<a>" + std::string(5000000, 'x'));
  waitForFiles(3);
  const Names during = files();
  EXPECT_EQ(during[0].substr(0, 8), ".tavrin-");
  EXPECT_EQ(Names(during.begin() + 1, during.end()), before_);
  process.write("</a>");
  EXPECT_EQ(process.wait(), silent(0));
  EXPECT_EQ(files(), (Names{"large.xml", "out.xml", "small.xml"}));
}
