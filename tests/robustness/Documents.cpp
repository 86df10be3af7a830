#include "Documents.h"

namespace documents {

namespace {

/// Longer than what a string holds without memory of its own.
const std::string kLong(300, 'l');

}  // namespace

const std::string& text(bool undeclares) {
  const auto make = [](const std::string& declaration) {
    return std::string("<?xml version='1.0' encoding='UTF-8' standalone='no'?>") +
           "<!--a comment in front of the document type--><?instruction some data of it?>"
           "<!DOCTYPE p:root PUBLIC 'a public identifier of it' 'external-subset.dtd' ["
           "<!ELEMENT p:root (#PCDATA|child|other-child)*>"
           "<!ATTLIST child default CDATA 'the default value of it' type (one|another|third) "
           "#IMPLIED>"
           "<!ENTITY internal 'text of an internal entity<child/>'>"
           "<!ENTITY external SYSTEM 'external-entity.ent'>"
           "<!ENTITY % parameter SYSTEM 'parameter-entity.ent'>%parameter;"
           "<!--a comment in the document type--><?instruction in the document type?>]>"
           "<p:root xmlns:p='urn:a-namespace-name' xmlns='urn:the-default-namespace'>"
           "some text &amp; a reference &#8364; \xC3\xA4 &internal; and &external; &unknown;"
           "<child p:attribute='a value of some length' second='&#10;&internal-text;'/>"
           "<![CDATA[a section of <character> data]]><!--a comment in the content-->"
           "<?instruction in the content?><other-child" +
           declaration + "><q:child xmlns:q='urn:another'>" + kLong +
           "</q:child></other-child></p:root><!--a comment behind the root-->\n";
  };
  static const std::string with = make(" xmlns=''");
  static const std::string without = make("");
  return undeclares ? with : without;
}

const std::string& entity(const std::string& systemId) {
  static const std::string subset =
      "<!ENTITY internal-text 'text of an entity of the subset'><!ELEMENT child EMPTY>"
      "<!ATTLIST other-child third NMTOKENS 'several tokens of it'>";
  static const std::string parameter = "<!ENTITY of-parameter 'text of it, of some length'>";
  static const std::string general =
      "text of an external entity<child second='1'>&internal;</child>";
  static const std::string none;
  if (systemId == "external-subset.dtd") return subset;
  if (systemId == "parameter-entity.ent") return parameter;
  return systemId == "external-entity.ent" ? general : none;
}

const std::string& declarations(bool withIdentifiers) {
  const auto make = [](const std::string& notations) {
    return std::string("<!DOCTYPE a-root-element [") +
           "<!ELEMENT a-root-element (a-child,(another-child|a-third-child)*,a-fourth-child?)+>"
           "<!ATTLIST a-root-element an-attribute CDATA 'the default value of it' type (one|other) "
           "'one'"
           " of-notation NOTATION (notation) #IMPLIED>" +
           notations +
           "<!ENTITY an-entity 'with a text of its own'>"
           "<!ENTITY % a-parameter-entity 'with a text of its own'>]><a-root-element/>";
  };
  static const std::string without = make("");
  static const std::string with = make(
      "<!NOTATION notation PUBLIC 'a public identifier'><!NOTATION other SYSTEM 'a-system-id'>"
      "<!ENTITY unparsed SYSTEM 'a system identifier' NDATA notation>"
      "<!ENTITY external PUBLIC 'a public identifier' 'a system identifier'>");
  return withIdentifiers ? with : without;
}

}  // namespace documents
