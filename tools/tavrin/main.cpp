#include <Tavrin/Exceptions.h>

#include <exception>
#include <new>

#include "commands/CommandLine.h"
#include "files/Failure.h"
#include "files/Process.h"

namespace {

tool::ExitStatus report(const tool::Failure& failure) {
  failure.report();
  return failure.status();
}

}  // namespace

int main(int argc, char** argv) {
  const tool::Process process;
  try {
    return tool::runCommandLine(argc, argv);
  } catch (const tool::Failure& failure) {
    return report(failure);
  } catch (const Tavrin::SAXException& exception) {
    // Not about a document: the library has no type, feature or property of some name.
    return report(tool::Failure::usage(exception.getMessage()));
  } catch (const std::bad_alloc&) {
    return report(tool::Failure::usage("not enough memory"));
  } catch (const std::exception& exception) {
    return report(tool::Failure::usage(exception.what()));
  }
}
