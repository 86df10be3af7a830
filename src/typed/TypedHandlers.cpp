#include <Tavrin/TypedData.h>

namespace Tavrin {

PrimitiveTypeContentHandler::~PrimitiveTypeContentHandler() = default;
void PrimitiveTypeContentHandler::bytes(const std::string&) {}
void PrimitiveTypeContentHandler::shorts(const std::vector<short>&) {}
void PrimitiveTypeContentHandler::ints(const std::vector<long>&) {}
void PrimitiveTypeContentHandler::longs(const std::vector<long>&) {}
void PrimitiveTypeContentHandler::booleans(const std::vector<bool>&) {}
void PrimitiveTypeContentHandler::floats(const std::vector<float>&) {}
void PrimitiveTypeContentHandler::doubles(const std::vector<double>&) {}

EncodingAlgorithmContentHandler::~EncodingAlgorithmContentHandler() = default;
void EncodingAlgorithmContentHandler::octets(const std::string&, int, const std::string&) {}
void EncodingAlgorithmContentHandler::object(const std::string&, int, const EncodedData&) {}

}  // namespace Tavrin
