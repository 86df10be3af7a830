#include "PullLog.h"

using Tavrin::PullEvent;

void PullLog::deliver() {
  switch (reader_.event()) {
    case PullEvent::none:
      log.comment("no event");
      break;
    case PullEvent::startDocument:
      log.startDocument();
      break;
    case PullEvent::endDocument:
      log.endDocument();
      break;
    case PullEvent::startElement:
    case PullEvent::endElement:
      deliverElement();
      break;
    case PullEvent::characters:
      if (reader_.value() && isTyped) {
        log.object(std::string(reader_.algorithmURI()), reader_.algorithmIndex(), *reader_.value());
      } else {
        log.characters(std::string(reader_.text()));
      }
      break;
    case PullEvent::ignorableWhitespace:
      log.ignorableWhitespace(std::string(reader_.text()));
      break;
    case PullEvent::octets:
      log.octets(std::string(reader_.algorithmURI()), reader_.algorithmIndex(),
                 std::string(reader_.octets()));
      break;
    case PullEvent::processingInstruction:
      log.processingInstruction(std::string(reader_.target()), std::string(reader_.data()));
      break;
    case PullEvent::skippedEntity:
      log.skippedEntity(std::string(reader_.name()));
      break;
    case PullEvent::comment:
      log.comment(std::string(reader_.text()));
      break;
    case PullEvent::startCDATA:
      log.startCDATA();
      break;
    case PullEvent::endCDATA:
      log.endCDATA();
      break;
    case PullEvent::startEntity:
      log.startEntity(std::string(reader_.name()));
      break;
    case PullEvent::endEntity:
      log.endEntity(std::string(reader_.name()));
      break;
    default:
      deliverDeclaration();
  }
}

void PullLog::deliverElement() {
  const std::string uri(reader_.uri());
  const std::string localName(reader_.localName());
  const std::string qName(reader_.qName());
  if (reader_.event() == PullEvent::startElement) {
    prefixes_.emplace_back();
    for (std::size_t i = 0; i < reader_.mappingCount(); ++i) {
      const auto [prefix, name] = reader_.mapping(i);
      log.startPrefixMapping(std::string(prefix), std::string(name));
      prefixes_.back().emplace_back(prefix);
    }
    log.startElement(uri, localName, qName, reader_.attributes());
  } else {
    log.endElement(uri, localName, qName);
    std::vector<std::string>& prefixes = prefixes_.back();
    for (; !prefixes.empty(); prefixes.pop_back()) log.endPrefixMapping(prefixes.back());
    prefixes_.pop_back();
  }
}

void PullLog::deliverDeclaration() {
  const std::string name(reader_.name());
  const std::string publicId(reader_.publicId());
  const std::string systemId(reader_.systemId());
  switch (reader_.event()) {
    case PullEvent::startDTD:
      return log.startDTD(name, publicId, systemId);
    case PullEvent::endDTD:
      return log.endDTD();
    case PullEvent::notationDecl:
      return log.notationDecl(name, publicId, systemId);
    case PullEvent::unparsedEntityDecl:
      return log.unparsedEntityDecl(name, publicId, systemId, std::string(reader_.notationName()));
    case PullEvent::externalEntityDecl:
      return log.externalEntityDecl(name, publicId, systemId);
    case PullEvent::internalEntityDecl:
      return log.internalEntityDecl(name, part(1));
    case PullEvent::elementDecl:
      return log.elementDecl(name, part(1));
    default:
      return log.attributeDecl(part(0), part(1), part(2), part(3), part(4));
  }
}
