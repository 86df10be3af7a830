#include "peers.h"

namespace peers {

std::vector<Reader> readers() {
  return {
      {"expat-istream", readExpatStream}, {"raw-expat", readRawExpat, false},
#ifdef BENCH_LIBXML2
      {"libxml2", readLibxml2},
#endif
#ifdef BENCH_XERCES
      {"Xerces-C++", readXerces},
#endif
#ifdef BENCH_PUGIXML
      {"pugixml", readPugixml},
#endif
  };
}

std::vector<PushReader> pushReaders() {
  return {
      {"expat", pushExpat},
#ifdef BENCH_LIBXML2
      {"libxml2", pushLibxml2},
#endif
  };
}

std::vector<Writer> writers() {
  return {
      {"escape-loop", createEscapeLoop},
#ifdef BENCH_LIBXML2
      {"xmlTextWriter", createTextWriter},
#endif
  };
}

}  // namespace peers
