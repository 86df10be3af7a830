#include "recorder.h"

/// The attributes of one start tag.
class Recorder::PlayedAttributes : public Tavrin::Attributes {
 public:
  explicit PlayedAttributes(const Recorder& recorder) : recorder_(recorder) {}

  void show(std::size_t first, std::uint32_t length) {
    first_ = first;
    length_ = static_cast<int>(length);
  }

  int getLength() const override { return length_; }
  const std::string& getURI(int index) const override { return name(index).uri; }
  const std::string& getLocalName(int index) const override { return name(index).localName; }
  const std::string& getQName(int index) const override { return name(index).qName; }
  const std::string& getType(int index) const override { return at(index).type; }
  const std::string& getValue(int index) const override { return at(index).value; }

  int getIndex(const std::string& uri, const std::string& localName) const override {
    for (int i = 0; i < length_; ++i) {
      if (name(i).uri == uri && name(i).localName == localName) return i;
    }
    return -1;
  }
  int getIndex(const std::string& qName) const override {
    for (int i = 0; i < length_; ++i) {
      if (name(i).qName == qName) return i;
    }
    return -1;
  }
  const std::string& getType(const std::string& uri, const std::string& localName) const override {
    return getType(getIndex(uri, localName));
  }
  const std::string& getType(const std::string& qName) const override {
    return getType(getIndex(qName));
  }
  const std::string& getValue(const std::string& uri, const std::string& localName) const override {
    return getValue(getIndex(uri, localName));
  }
  const std::string& getValue(const std::string& qName) const override {
    return getValue(getIndex(qName));
  }

 private:
  const Attribute& at(int index) const {
    return recorder_.attributes_[first_ + static_cast<std::size_t>(index)];
  }
  const Name& name(int index) const { return recorder_.names_[at(index).name]; }

  const Recorder& recorder_;
  std::size_t first_ = 0;
  int length_ = 0;
};

std::size_t Recorder::intern(const std::string& uri, const std::string& localName,
                             const std::string& qName) {
  const auto [entry, isNew] =
      indices_.try_emplace(uri + '\n' + localName + '\n' + qName, names_.size());
  if (isNew) names_.push_back({uri, localName, qName});
  return entry->second;
}

void Recorder::addTexts(Kind kind, const std::string& first, const std::string& second) {
  events_.push_back({kind, 0, texts_.size(), 0});
  texts_.push_back(first);
  texts_.push_back(second);
}

void Recorder::startDocument() { events_.push_back({Kind::StartDocument, 0, 0, 0}); }

void Recorder::endDocument() { events_.push_back({Kind::EndDocument, 0, 0, 0}); }

void Recorder::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  addTexts(Kind::StartPrefixMapping, prefix, uri);
}

void Recorder::endPrefixMapping(const std::string& prefix) {
  events_.push_back({Kind::EndPrefixMapping, 0, texts_.size(), 0});
  texts_.push_back(prefix);
}

void Recorder::startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Tavrin::Attributes& attributes) {
  const int length = attributes.getLength();
  events_.push_back({Kind::StartElement, static_cast<std::uint32_t>(length),
                     intern(uri, localName, qName), attributes_.size()});
  for (int i = 0; i < length; ++i) {
    attributes_.push_back(
        {intern(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i)),
         attributes.getType(i), attributes.getValue(i)});
  }
}

void Recorder::endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName) {
  events_.push_back({Kind::EndElement, 0, intern(uri, localName, qName), 0});
}

// A run of text is one event, however the reader cut it.
void Recorder::characters(const std::string& text) {
  if (!events_.empty() && events_.back().kind == Kind::Characters) {
    texts_.back() += text;
    return;
  }
  events_.push_back({Kind::Characters, 0, texts_.size(), 0});
  texts_.push_back(text);
}

void Recorder::ignorableWhitespace(const std::string& text) {
  events_.push_back({Kind::IgnorableWhitespace, 0, texts_.size(), 0});
  texts_.push_back(text);
}

void Recorder::processingInstruction(const std::string& target, const std::string& data) {
  addTexts(Kind::ProcessingInstruction, target, data);
}

void Recorder::play(Tavrin::ContentHandler& handler) const {
  PlayedAttributes attributes(*this);
  for (const Event& event : events_) {
    switch (event.kind) {
      case Kind::StartDocument:
        handler.startDocument();
        break;
      case Kind::EndDocument:
        handler.endDocument();
        break;
      case Kind::StartPrefixMapping:
        handler.startPrefixMapping(texts_[event.index], texts_[event.index + 1]);
        break;
      case Kind::EndPrefixMapping:
        handler.endPrefixMapping(texts_[event.index]);
        break;
      case Kind::StartElement: {
        const Name& name = names_[event.index];
        attributes.show(event.first, event.length);
        handler.startElement(name.uri, name.localName, name.qName, attributes);
        break;
      }
      case Kind::EndElement: {
        const Name& name = names_[event.index];
        handler.endElement(name.uri, name.localName, name.qName);
        break;
      }
      case Kind::Characters:
        handler.characters(texts_[event.index]);
        break;
      case Kind::IgnorableWhitespace:
        handler.ignorableWhitespace(texts_[event.index]);
        break;
      case Kind::ProcessingInstruction:
        handler.processingInstruction(texts_[event.index], texts_[event.index + 1]);
        break;
    }
  }
}

std::size_t Recorder::count() const {
  std::size_t count = attributes_.size();
  for (const Event& event : events_) {
    count += event.kind == Kind::StartElement || event.kind == Kind::EndElement ||
             event.kind == Kind::Characters;
  }
  return count;
}
