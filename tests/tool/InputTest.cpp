#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>
#include <thread>

#include "Workplace.h"

namespace {

using namespace std::string_literals;

/// What every command does about a document that it cannot get at.
class Input : public Workplace {
 protected:
  void expectRefused(const std::string& name, const std::string& message,
                     const std::function<void()>& beforeExec = {}) {
    SCOPED_TRACE(name);
    const Names before = files();
    const Result refused = {2, "", "tavrin: " + message + "\n"};
    EXPECT_EQ(run({"check", name}, "", beforeExec), refused);
    EXPECT_EQ(run({"events", name}, "", beforeExec), refused);
    EXPECT_EQ(run({"convert", name}, "", beforeExec), refused);
    EXPECT_EQ(run({"convert", name, "out.xml"}, "", beforeExec), refused);
    EXPECT_EQ(files(), before);
  }
};

/// The superuser may read any file, but not without these capabilities.
void giveUpReadingAnyFile() {
  prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
  prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

/// About 3 MB, more than any buffer in the way.
std::string largeDocument() {
  std::string document = "<list>";
  for (int i = 0; i < 50000; ++i) {
    document += "<item id='" + std::to_string(i) + "'>text of some length, &lt; and &amp;</item>\n";
  }
  return document + "</list>";
}

}  // namespace

TEST_F(Input, IsRefusedWhereThereIsNoFile) {
  expectRefused("missing.xml", "missing.xml: No such file or directory");
  expectRefused("missing/in.xml", "missing/in.xml: No such file or directory");
  expectRefused("", "\"\": No such file or directory");
  const std::string longName(300, 'n');
  // Of a long word the middle is left out: 200 characters remain, ": " among them.
  const std::string shown = std::string(99, 'n') + "..." + std::string(96, 'n');
  expectRefused(longName, shown + ": File name too long");
}

TEST_F(Input, IsRefusedWhereItIsADirectory) {
  std::filesystem::create_directory(path("directory"));
  for (const std::string name : {"directory", "."}) {
    SCOPED_TRACE(name);
    const Result refused = {2, "", "tavrin: " + name + ": Is a directory\n"};
    EXPECT_EQ(run({"events", name}), refused);
    EXPECT_EQ(run({"convert", name}), refused);
    EXPECT_EQ(run({"convert", name, "out.xml"}), refused);
    // These look into it.
    const Result empty = {0, "", name + ": warning: there are no documents in this folder\n"};
    EXPECT_EQ(run({"check", name}), empty);
    EXPECT_EQ(run({"stat", name}), empty);
  }
  expectRefused("-", "standard input: Is a directory",
                [] { dup2(open(".", O_RDONLY), STDIN_FILENO); });
}

TEST_F(Input, IsRefusedWithoutPermission) {
  writeFile("in.xml", "<a/>");
  std::filesystem::permissions(path("in.xml"), std::filesystem::perms::none);
  expectRefused("in.xml", "in.xml: Permission denied", giveUpReadingAnyFile);
}

TEST_F(Input, IsRefusedWhereItCannotBeOpened) {
  const int socketNumber = require(socket(AF_UNIX, SOCK_STREAM, 0), "socket");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, path("socket").c_str());
  require(bind(socketNumber, reinterpret_cast<sockaddr*>(&address), sizeof address), "bind");
  expectRefused("socket", "socket: No such device or address");
  std::filesystem::create_symlink("loop", path("loop"));
  expectRefused("loop", "loop: Too many levels of symbolic links");
  writeFile("file", "<a/>");
  expectRefused("file/in.xml", "file/in.xml: Not a directory");
  close(socketNumber);
}

TEST_F(Input, IsRefusedWhereStandardInputIsClosed) {
  expectRefused("-", "standard input: Bad file descriptor", [] { close(STDIN_FILENO); });
}

// /proc/self/mem can be opened, but there is nothing at address 0 to read.
TEST_F(Input, IsRefusedWhereReadingFails) {
  expectRefused("/proc/self/mem", "/proc/self/mem: Input/output error");
}

// A document that looks well-formed, or cut off, where reading ended is neither.
TEST_F(Input, IsNotTakenForADocumentWhereReadingFailsInTheMiddle) {
  const std::string text(100000, 'x');
  for (const std::string& document : {"<a/>"s, "<a>"s, "<a>" + text + "</a>", "<a>" + text}) {
    SCOPED_TRACE(document.substr(0, 5) + " " + std::to_string(document.size()));
    for (const std::string command : {"check", "events", "convert"}) {
      // The peer goes away without having read what was sent to it, which resets the connection.
      int ends[2];
      require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), "socketpair");
      EXPECT_EQ(write(ends[1], "x", 1), 1);
      EXPECT_EQ(write(ends[0], document.data(), document.size()), ssize(document));
      close(ends[0]);
      const Result result = run({command, "-"}, "", [&] { dup2(ends[1], STDIN_FILENO); });
      EXPECT_EQ(result.status, 2);
      EXPECT_EQ(result.err, "tavrin: standard input: Connection reset by peer\n");
      EXPECT_EQ(result.out.find("well-formed"), std::string::npos);
      close(ends[1]);
    }
  }
}

TEST_F(Input, MayComeThroughASymbolicLink) {
  writeFile("in.xml", "<a/>");
  std::filesystem::create_symlink("in.xml", path("link"));
  EXPECT_EQ(run({"check", "link"}), (Result{0, "link: well-formed\n", ""}));
}

TEST_F(Input, MayComeThroughANamedPipe) {
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  std::thread writer([&] { writeFile("pipe", "<a/>"); });
  EXPECT_EQ(run({"check", "pipe"}), (Result{0, "pipe: well-formed\n", ""}));
  writer.join();
}

TEST_F(Input, MayBeLargeAndComeThroughAPipe) {
  const std::string document = largeDocument();
  std::string copy = document;
  for (char& c : copy) c = c == '"' ? '\'' : c;
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), (Result{0, copy, ""}));
  EXPECT_EQ(run({"convert", "--no-declaration", "-", "out.xml"}, document), silent(0));
  EXPECT_EQ(readFile("out.xml"), copy);
  EXPECT_EQ(run({"check", "-"}, document), (Result{0, "-: well-formed\n", ""}));
}

// Readers take a short block for the last one, and a pipe gives what there is.
TEST_F(Input, MayComeInPieces) {
  for (const std::string command : {"check", "convert"}) {
    ToolProcess process({command, "-"}, directory_);
    for (const char c : std::string("<?xml version='1.0'?><a>1<b/>2</a>")) {
      process.write(std::string(1, c));
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_EQ(
        process.wait(),
        (Result{0,
                command == "check" ? "-: well-formed\n"
                                   : "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>1<b/>2</a>",
                ""}));
  }
}

// The block that readers ask for is 1 MiB; the end may fall on its border.
TEST_F(Input, MayEndOnTheBorderOfABlock) {
  constexpr std::size_t kBlock = 1024 * 1024;
  for (const std::size_t size : {kBlock - 1, kBlock, kBlock + 1, 2 * kBlock, 64UL * 1024}) {
    SCOPED_TRACE(size);
    const std::string document = "<a>" + std::string(size - 7, 'x') + "</a>";
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), (Result{0, document, ""}));
    writeFile("in.xml", document);
    EXPECT_EQ(run({"convert", "--no-declaration", "in.xml"}), (Result{0, document, ""}));
  }
}

TEST_F(Input, IsReadAlsoWhereAllStandardStreamsAreClosed) {
  writeFile("in.xml", "<a>");
  writeFile("good.xml", "<a/>");
  const auto closeAll = [] {
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    close(STDERR_FILENO);
  };
  EXPECT_EQ(run({"convert", "in.xml", "out.xml"}, "", closeAll), silent(1));
  EXPECT_EQ(readFile("in.xml"), "<a>");
  EXPECT_EQ(run({"convert", "--no-declaration", "good.xml", "out.xml"}, "", closeAll), silent(0));
  EXPECT_EQ(readFile("out.xml"), "<a/>");
  EXPECT_EQ(files(), (Names{"good.xml", "in.xml", "out.xml"}));
}
