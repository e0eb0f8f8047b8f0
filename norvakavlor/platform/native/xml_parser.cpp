#include <norvakavlor/platform/xml_back_end.h>

#include <exception>
#include <expat.h>
#include <memory>
#include <new>
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

    /// Raises what the builder raised.
    void rethrow() const {
        if (fault_)
            std::rethrow_exception(fault_);
    }

private:
    /// Stops expat when the builder refuses or raises: no exception may pass through expat's own frames, so
    /// it waits until expat has stopped.
    template <class Step> static void pass(void* self, Step&& step) {
        Events& events = *static_cast<Events*>(self);
        if (events.fault_)
            return;
        try {
            if (step(events))
                return;
        } catch (const std::exception&) {
            events.fault_ = std::current_exception();
        }
        XML_StopParser(events.parser_, XML_FALSE);
    }

    static void startElement(void* self, const char* name, const char** attributes) {
        pass(self, [&](Events& events) {
            bool accepted = events.builder_.startElement(name);
            for (; accepted && *attributes; attributes += 2)
                accepted = events.builder_.attribute(attributes[0], attributes[1]);
            return accepted;
        });
    }

    static void endElement(void* self, const char*) {
        pass(self, [](Events& events) { return events.builder_.endElement(); });
    }

    static void characters(void* self, const char* data, int length) {
        pass(self, [&](Events& events) {
            const std::string_view piece(data, static_cast<size_t>(length));
            return events.inCData_ ? events.builder_.cdata(piece) : events.builder_.text(piece);
        });
    }

    static void startCData(void* self) {
        pass(self, [](Events& events) {
            events.inCData_ = true;
            return events.builder_.cdata({}); // one without content is a node too
        });
    }

    static void endCData(void* self) {
        pass(self, [](Events& events) {
            events.inCData_ = false;
            return true;
        });
    }

    static void comment(void* self, const char* content) {
        pass(self, [&](Events& events) { return events.builder_.comment(content); });
    }

    static void instruction(void* self, const char* target, const char* content) {
        pass(self, [&](Events& events) { return events.builder_.instruction(target, content); });
    }

    XML_Parser parser_;
    xml::TreeBuilder& builder_;
    bool inCData_ = false;
    std::exception_ptr fault_;
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
    events.rethrow();
    const XML_Error code = XML_GetErrorCode(parser.get());
    if (code == XML_ERROR_NO_MEMORY)
        throw std::bad_alloc();
    error = {XML_GetCurrentLineNumber(parser.get()), XML_GetCurrentColumnNumber(parser.get()) + 1,
             XML_ErrorString(code)};
    return false;
}

} // namespace norvakavlor::platform
