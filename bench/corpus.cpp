#include "corpus.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "documents.h"

Corpus::Corpus(double scaleOfAll, const std::vector<std::string>& files) : scale(scaleOfAll) {
  const auto add = [this](const char* name, auto make, double count) {
    const unsigned number = scaled(count);
    documents.push_back(std::make_shared<Document>(
        name, std::function<decltype(make(0U))()>([make, number] { return make(number); })));
  };
  add("records", documents::records, 333333);  // A million elements.
  add("mesh", documents::floats, 1000000);
  mesh = documents.back();
  add("text", documents::text, 27000);
  add("prose", documents::prose, 16000);  // 25 MB.
  add("languages", documents::languages, 12000);
  add("attributes", documents::attributes, 100000);
  add("table", documents::table, 200000);  // 16 MB.
  small = std::make_shared<Document>(
      "document", std::function<std::string()>([] { return documents::records(12); }));
  messages = std::make_shared<Document>("messages", std::function(documents::message));
  for (const std::string& path : files) addFile(path);
}

void Corpus::addFile(const std::string& path) {
  const std::string name = std::filesystem::path(path).stem().string();
  for (const DocumentPointer& document : documents) {
    if (document->name() == name) throw std::runtime_error("two documents are called " + name);
  }
  documents.push_back(std::make_shared<Document>(
      name, std::function<std::string()>([text = documents::file(path)] { return text; })));
  documents.back()->setForeign();
  try {
    documents.back()->totals();
  } catch (const std::exception& exception) {
    throw std::runtime_error(path + ": " + exception.what());
  }
}

unsigned Corpus::scaled(double number) const {
  return static_cast<unsigned>(std::max(1.0, number * scale));
}
