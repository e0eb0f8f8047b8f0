#include <norvakavlor/platform/xml_back_end.h>

#include <algorithm>
#include <exception>
#include <expat.h>
#include <memory>
#include <new>
#include <numeric>
#include <string>
#include <type_traits>
#include <vector>

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

/// Runs over a text once more, for who must say where something is in it: elements that steps lead to, or the
/// one that is still open where the text ceases to be well-formed.
class Places {
public:
    Places() = default; ///< seeks none: runs to the end, or to the fault
    explicit Places(const std::vector<Steps>& wanted)
        : wanted_(&wanted), order_(wanted.size()), found_(wanted.size()) {
        std::iota(order_.begin(), order_.end(), size_t{0});
        // As elements begin: a parent before its children.
        std::sort(order_.begin(), order_.end(),
                  [&](size_t left, size_t right) { return wanted[left] < wanted[right]; });
    }

    bool run(std::string_view utf8) {
        const Parser parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
        if (!parser)
            return false;
        parser_ = parser.get();
        XML_SetUserData(parser_, this);
        XML_SetElementHandler(parser_, startElement, endElement);
        if (utf8.starts_with("\xEF\xBB\xBF"))
            utf8.remove_prefix(3);
        XML_Parse(parser_, utf8.data(), static_cast<int>(utf8.size()), XML_TRUE);
        if (ranOut_)
            throw std::bad_alloc();
        return true;
    }

    const std::vector<std::optional<xml::Position>>& found() const { return found_; }
    std::string innermost() const {
        if (open_.empty())
            return {};
        const Open& open = open_.back();
        return ", <" + open.name + "> was opened at " + std::to_string(open.at.line) + ":" +
               std::to_string(open.at.column);
    }

private:
    struct Open {
        std::string name;
        xml::Position at;
        size_t children = 0; ///< elements so far
    };

    bool isDone() const { return ranOut_ || (wanted_ && next_ == order_.size()); }

    static void startElement(void* self, const char* name, const char**) {
        Places& places = *static_cast<Places*>(self);
        try {
            places.start(name);
        } catch (const std::bad_alloc&) {
            places.ranOut_ = true; // raised when expat has stopped: no exception may pass its frames
        }
        if (places.isDone())
            XML_StopParser(places.parser_, XML_FALSE);
    }

    void start(const char* name) {
        if (isDone())
            return;
        if (!open_.empty())
            steps_.push_back(open_.back().children++);
        const bool isPassed = wanted_ && (*wanted_)[order_[next_]] <= steps_;
        if (!wanted_ || isPassed)
            at_ = {XML_GetCurrentLineNumber(parser_), XML_GetCurrentColumnNumber(parser_) + 1};
        // One that was passed without being met is not there.
        for (; !isDone() && isPassed && (*wanted_)[order_[next_]] <= steps_; ++next_) {
            if ((*wanted_)[order_[next_]] == steps_)
                found_[order_[next_]] = at_;
        }
        open_.push_back({wanted_ ? "" : name, at_, 0});
    }

    static void endElement(void* self, const char*) {
        Places& places = *static_cast<Places*>(self);
        if (places.isDone()) // the end of an empty element may still come
            return;
        places.open_.pop_back();
        if (!places.steps_.empty())
            places.steps_.pop_back();
    }

    XML_Parser parser_ = nullptr;
    const std::vector<Steps>* wanted_ = nullptr;
    std::vector<size_t> order_; ///< of the wanted ones, as they are met
    size_t next_ = 0;
    std::vector<std::optional<xml::Position>> found_; ///< in the order of `wanted_`
    std::vector<Open> open_;
    Steps steps_; ///< to the innermost open element
    xml::Position at_;
    bool ranOut_ = false; ///< of memory
};

std::string openElement(std::string_view utf8) {
    Places places;
    return places.run(utf8) ? places.innermost() : std::string();
}

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
    if (code == XML_ERROR_TAG_MISMATCH || code == XML_ERROR_NO_ELEMENTS || code == XML_ERROR_UNCLOSED_TOKEN)
        error.reason += openElement(utf8);
    return false;
}

std::vector<std::optional<xml::Position>> positionsOf(std::string_view utf8,
                                                      const std::vector<Steps>& wanted) {
    Places places(wanted);
    if (!wanted.empty())
        places.run(utf8);
    return places.found();
}

} // namespace norvakavlor::platform
