/// @file
/// The whole public interface.
#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/Connect.h>
#include <Tavrin/DefaultHandler.h>
#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/Version.h>
#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLFilter.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLReader_Expat.h>
#include <Tavrin/XMLReader_FI.h>
#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLReader_XML10.h>
#include <Tavrin/XMLWriter.h>
#include <Tavrin/XMLWriter_FI.h>
#include <Tavrin/XMLWriter_X891.h>
#include <Tavrin/XMLWriter_XML.h>
#include <Tavrin/XMLWriter_XML10.h>
