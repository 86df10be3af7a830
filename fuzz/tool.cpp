// Command lines of the tool, in this process and in a folder of its own. An input is a command
// line, a line feed, and files, each ended by a form feed. Words of the command line are octets
// that choose one; a file name is always one of a few in the folder.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <mutex>
#include <set>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "Normal.h"

int toolMain(int argc, char** argv);  // The tool's own main.

namespace {

namespace fs = std::filesystem;

const std::string kWords[] = {"convert",
                              "check",
                              "events",
                              "stat",
                              "diff",
                              "types",
                              "in0",
                              "in1",
                              "in2",
                              "-",
                              "out.xml",
                              "out.finf",
                              "old.xml",
                              "old.finf",
                              "link",
                              "folder",
                              "none",
                              "none/out.xml",
                              "--indent",
                              "--force",
                              "--from",
                              "--to",
                              "Expat",
                              "XML10",
                              "FI",
                              "X891",
                              "XML",
                              "none",
                              "--lexical",
                              "--no-declaration",
                              "--entities",
                              "--declarations",
                              "--help",
                              "--version",
                              "--",
                              "",
                              "[in0]",
                              "++",
                              "{}",
                              "-h",
                              "--from=",
                              "--json",
                              "--from-a",
                              "--from-b",
                              "--indent=4",
                              "--tabs",
                              "--canonical",
                              "--canonical=exclusive",
                              "--comments",
                              "--inclusive-prefixes",
                              "get",
                              "inspect",
                              "assemble",
                              "vocabulary",
                              "learn",
                              "show",
                              "header",
                              "manual",
                              "completion",
                              "bash",
                              "--text",
                              "--all",
                              "--typed=auto",
                              "--typed",
                              "--typed-exact",
                              "--typed-lenient",
                              "--vocabulary",
                              "--uri",
                              "urn:v",
                              "-o",
                              "-j",
                              "2",
                              "--quiet",
                              "--timing",
                              "--repeat=2",
                              "--html",
                              "--explain",
                              "--compress=gzip",
                              "--compress=zstd",
                              "out.xml.gz",
                              "out.fi.zst",
                              "--encoding",
                              "Shift_JIS",
                              "UTF-16",
                              "UTF-32BE",
                              "--count",
                              "--max",
                              "-0",
                              "//a",
                              "/*[2]/@x",
                              "//*[@a='b']/text()",
                              "--ns",
                              "p=urn:p",
                              "--tables",
                              "--at",
                              "--color=always",
                              "--property",
                              "--feature",
                              "coalesce-characters",
                              "--limit",
                              "maximum-depth=2",
                              "--initial",
                              "--name"};
constexpr char kOld[] = "<old/>";

fs::path folder;

void removeFolder() {
  std::error_code error;
  fs::current_path("/", error);
  fs::remove_all(folder, error);
}

std::string contentOf(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

void fill(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// Lets a descriptor mean a file of the folder.
void redirect(int number, const char* name, int flags) {
  const int file = open(name, flags | O_CLOEXEC, 0600);
  if (file < 0 || dup2(file, number) < 0) finding(std::string("cannot open ") + name);
  close(file);
}

int run(const std::vector<std::string>& words) {
  std::vector<std::string> arguments = {"tavrin"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  redirect(STDIN_FILENO, "in0", O_RDONLY);
  redirect(STDOUT_FILENO, "stdout", O_WRONLY | O_CREAT | O_TRUNC);
  return toolMain(static_cast<int>(arguments.size()), pointers.data());
}

std::set<std::string> names() {
  std::set<std::string> result;
  for (const auto& entry : fs::directory_iterator(".")) result.insert(entry.path().filename());
  return result;
}

/// What a command line finds: the files of the input, and two that are in the way.
void prepare(const std::string& files) {
  std::istringstream rest(files);
  for (const char* name : {"in0", "in1", "in2"}) {
    std::string content;
    std::getline(rest, content, '\f');
    fill(name, content);
  }
  fill("old.xml", kOld);
  fill("old.finf", kOld);
  fill("stdout", "");
}

/// Whether nothing but warnings was said. No message has a line break in it.
bool areWarnings(const std::string& errors) {
  std::istringstream lines(errors);
  for (std::string line; std::getline(lines, line);) {
    if (line.find(": warning: ") == std::string::npos) return false;
  }
  return true;
}

/// Whether a command line copies a document of XML text, with the types that follow the standards.
bool copiesText(const std::vector<std::string>& words) {
  const auto isOperand = [](const std::string& word) {
    return word == "-" || !word.starts_with('-');
  };
  if (words.empty() || words[0] != "convert") return false;
  const auto in = std::find_if(words.begin() + 1, words.end(), isOperand);
  if (in == words.end()) return false;
  const std::string begin = contentOf(*in == "-" ? "in0" : *in).substr(0, 256);
  return begin.find("\xE0") != 0 && begin.find("finf") == begin.npos;
}

/// Whatever a file holds, the octets of its inspection are assembled again.
void checkIdentity() {
  run({"inspect", "in0"});
  fs::copy_file("stdout", "inspected", fs::copy_options::overwrite_existing);
  if (run({"assemble", "inspected"}) != 0 || contentOf("stdout") != contentOf("in0")) {
    finding("the octets of an inspection are others");
  }
  fs::remove("inspected");
}

/// Takes what goes to standard error. The two documents of a diff are read by two threads, either
/// of which may warn, so the lines are put together under a lock, as stderr does it.
class ErrorsTaken : private std::streambuf {
 public:
  ErrorsTaken() : before_(std::cerr.rdbuf(this)) {}
  ~ErrorsTaken() override { std::cerr.rdbuf(before_); }
  ErrorsTaken(const ErrorsTaken&) = delete;
  ErrorsTaken& operator=(const ErrorsTaken&) = delete;

  std::string errors() const {
    const std::lock_guard lock(mutex_);
    return errors_;
  }

 private:
  int_type overflow(int_type octet) override {
    if (traits_type::eq_int_type(octet, traits_type::eof())) return traits_type::not_eof(octet);
    const char character = traits_type::to_char_type(octet);
    xsputn(&character, 1);
    return octet;
  }

  std::streamsize xsputn(const char* characters, std::streamsize count) override {
    const std::lock_guard lock(mutex_);
    errors_.append(characters, static_cast<std::size_t>(count));
    return count;
  }

  mutable std::mutex mutex_;
  std::string errors_;
  std::streambuf* before_;
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::error_code error;
  const bool hasMemory = fs::is_directory("/dev/shm", error);
  std::string name =
      (hasMemory ? fs::path("/dev/shm") : fs::temp_directory_path()) / "tavrin-fuzz-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) finding("no folder to work in");
  folder = name;
  fs::current_path(folder);
  fs::create_directory("folder");
  fs::create_symlink("missing", "link");
  std::atexit(removeFolder);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  std::vector<std::string> words;
  for (std::size_t i = 0; i < std::min<std::size_t>(end, 12); ++i) {
    words.push_back(kWords[static_cast<unsigned char>(input[i] - '0') % std::size(kWords)]);
  }
  const auto given = [&words](const char* word) {
    return std::find(words.begin(), words.end(), word) != words.end();
  };
  prepare(input.substr(std::min(end + 1, input.size())));
  const std::set<std::string> before = names();

  const ErrorsTaken taken;
  const int status = run(words);
  const std::string errors = taken.errors();
  if (status < 0 || status > 2) finding("exit status " + std::to_string(status));
  // The reader of "FI" tells there of what it delivers to nobody.
  // Times and sums are told there, too.
  const bool isTold = given("FI") || given("--timing") || given("--repeat=2") || given("-o");
  if (status == 0 && !areWarnings(errors) && !isTold) finding("done, but " + errors);
  if (status == 2 && errors.empty()) finding("failed without a word");

  std::set<std::string> outputs;
  const std::set<std::string> after = names();
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::inserter(outputs, outputs.end()));
  if (after.size() != before.size() + outputs.size()) finding("a file is gone");
  if (outputs.size() > 1) finding("more than one file");
  for (const std::string& name : outputs) {
    if (fs::is_directory(name)) {  // Of the copies in a folder, others stay where one fails.
      fs::remove_all(name);
      continue;
    }
    if (status != 0) finding(name + " in spite of a failure: " + errors);
    // Other types may write what is not well-formed, a vocabulary has to be named again, and other
    // commands write other things.
    const bool isOfOtherType =
        given("--to") || given("--from") || given("--vocabulary") || words[0] != "convert";
    if (!isOfOtherType && run({"check", "./" + name}) != 0) {
      finding(name + " is not a whole document: " + taken.errors());
    }
    // What was text can be text again, unless there was a warning. A limit can be moved.
    if (!isOfOtherType && errors.empty() && copiesText(words) &&
        run({"convert", "./" + name, "back.xml"}) != 0 &&
        taken.errors().find("--limit") == std::string::npos) {
      finding(name + " has no way back: " + taken.errors());
    }
    fs::remove("back.xml");
    fs::remove(name);
  }
  if (!words.empty() && words[0] == "inspect") checkIdentity();
  for (const char* name : {"old.xml", "old.finf"}) {
    if (contentOf(name) == kOld || (status == 0 && given("--force"))) continue;
    finding(std::string(name) + " was replaced, with status " + std::to_string(status));
  }
  return 0;
}
