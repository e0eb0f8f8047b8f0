#include <norvakavlor/platform/xml_back_end.h>

#include <expat.h>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

namespace norvakavlor::platform {
namespace {

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

/// Passes expat's events on to the builder, and stops expat when the builder refuses.
class Events {
public:
    Events(XML_Parser parser, xml::TreeBuilder& builder) : parser_(parser), builder_(builder) {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, startElement, endElement);
        XML_SetCharacterDataHandler(parser, characters);
        XML_SetCdataSectionHandler(parser, startCData, endCData);
        XML_SetCommentHandler(parser, comment);
        XML_SetProcessingInstructionHandler(parser, instruction);
    }

private:
    static Events& of(void* self) { return *static_cast<Events*>(self); }

    void stopUnless(bool accepted) {
        if (!accepted)
            XML_StopParser(parser_, XML_FALSE);
    }

    static void startElement(void* self, const char* name, const char** attributes) {
        xml::TreeBuilder& builder = of(self).builder_;
        bool accepted = builder.startElement(name);
        for (; accepted && *attributes; attributes += 2)
            accepted = builder.attribute(attributes[0], attributes[1]);
        of(self).stopUnless(accepted);
    }

    static void endElement(void* self, const char*) { of(self).stopUnless(of(self).builder_.endElement()); }

    static void characters(void* self, const char* data, int length) {
        const std::string_view piece(data, static_cast<size_t>(length));
        if (of(self).inCData_) {
            of(self).cdata_.append(piece);
        } else {
            of(self).stopUnless(of(self).builder_.text(piece));
        }
    }

    static void startCData(void* self) { of(self).inCData_ = true; }
    static void endCData(void* self) {
        of(self).stopUnless(of(self).builder_.cdata(of(self).cdata_));
        of(self).inCData_ = false;
        of(self).cdata_.clear();
    }

    static void comment(void* self, const char* content) {
        of(self).stopUnless(of(self).builder_.comment(content));
    }

    static void instruction(void* self, const char* target, const char* content) {
        of(self).stopUnless(of(self).builder_.instruction(target, content));
    }

    XML_Parser parser_;
    xml::TreeBuilder& builder_;
    bool inCData_ = false;
    std::string cdata_;
};

} // namespace

bool feedEvents(std::string_view utf8, xml::TreeBuilder& builder, ParseError& error) {
    // An encoding that is named here is taken instead of the one that the text declares.
    const Parser parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
    if (!parser)
        throw std::bad_alloc();
    XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_NEVER);
    Events events(parser.get(), builder);
    if (XML_Parse(parser.get(), utf8.data(), static_cast<int>(utf8.size()), XML_TRUE) == XML_STATUS_OK)
        return true;
    error = {XML_GetCurrentLineNumber(parser.get()), XML_GetCurrentColumnNumber(parser.get()) + 1,
             XML_ErrorString(XML_GetErrorCode(parser.get()))};
    return false;
}

} // namespace norvakavlor::platform
