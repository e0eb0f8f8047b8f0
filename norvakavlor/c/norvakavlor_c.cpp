#include <norvakavlor/c/norvakavlor_c.h>

#include <new>
#include <norvakavlor/c/group.h>
#include <norvakavlor/c/tables.h>
#include <norvakavlor/c/values.h>
#include <norvakavlor/component/class_list.h>
#include <norvakavlor/component/late_bound.h>
#include <norvakavlor/platform/xml_parser.h>
#include <norvakavlor/runtime/reason.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/version.h>
#include <norvakavlor/xml/node_object.h>
#include <optional>
#include <string>
#include <utility>

struct nk_error {
    int32_t number = 0;
    std::string source;
    std::string description;
    // Where in a document the fault is.
    std::string document;
    int32_t line = 0;
    int32_t column = 0;
    std::string member;
};

namespace norvakavlor {
namespace {

/// There may be no memory for saying that there is none.
nk_error outOfMemory{static_cast<int32_t>(RuntimeError::OutOfMemory), "NorvaKavlor",
                     usualText(RuntimeError::OutOfMemory)};

nk_error* newError(const Error& error) {
    const ErrorPlace& place = error.place();
    noteReason(error.reason());
    return new nk_error{error.number(),
                        error.source(),
                        error.description(),
                        place.document,
                        static_cast<int32_t>(place.line),
                        static_cast<int32_t>(place.column),
                        place.member};
}

const nk_error& orNone(const nk_error* error) {
    static const nk_error none;
    return error ? *error : none;
}

/// Runs one function of the interface: no exception crosses into C.
template <class Step> nk_error* withoutExceptions(Step&& step) noexcept {
    try {
        try {
            step();
            return nullptr;
        } catch (const Error& error) {
            return newError(error);
        } catch (const std::bad_alloc&) {
            return &outOfMemory;
        } catch (const std::exception& fault) {
            return newError(
                runtimeError(RuntimeError::InternalError,
                             std::string(usualText(RuntimeError::InternalError)) + ": " + fault.what()));
        }
    } catch (const std::bad_alloc&) {
        return &outOfMemory;
    }
}

/// What a client wants filled, so that it must be there.
template <class Result> Result& roomFor(Result* result) {
    if (!result)
        throw runtimeError(RuntimeError::InvalidProcedureCall);
    return *result;
}

/// The handles that a call takes: its object and those among two lists of values.
std::vector<nk_object*> handlesOf(nk_object* object, const nk_value* values = nullptr, size_t count = 0,
                                  const nk_value* one = nullptr) {
    if (!object)
        throw runtimeError(RuntimeError::ObjectNotSet);
    std::vector<nk_object*> handles{object};
    collectHandles(values, count, handles);
    collectHandles(one, 1, handles);
    return handles;
}

/// A member that the arguments go to.
Target targetOf(nk_object& handle, const char* name, size_t argumentCount) {
    const Member* member = name ? handle.object->dynamicClass().find(name) : nullptr;
    if (!member)
        throw runtimeError(RuntimeError::MemberNotFound);
    return resolveTarget(*handle.object, *member, argumentCount);
}

/// What a client gives: in order up to the first one that is left out, by name from there on.
struct GivenArguments {
    std::vector<Value> positional;
    NamedArguments named;

    GivenArguments(const Member& member, const nk_value* values, size_t count) {
        if (count > 0 && (!values || count > member.parameters.size()))
            throw runtimeError(RuntimeError::WrongNumberOfArguments);
        bool inOrder = true;
        for (size_t index = 0; index < count; ++index) {
            if (values[index].kind == NK_MISSING)
                inOrder = false;
            else if (inOrder)
                positional.push_back(fromClient(values[index]));
            else
                named.emplace_back(member.parameters[index].name, fromClient(values[index]));
        }
    }
};

void handOverOne(const Value& value, const GroupUse& use, nk_value* room) {
    if (!room)
        return; // not wanted
    ClientValues values;
    values.add(value, use.group());
    values.handOver(room);
}

} // namespace
} // namespace norvakavlor

using namespace norvakavlor;

nk_error* nk_create(const char* identifier, nk_object** object) {
    return withoutExceptions([&] {
        nk_object*& made = roomFor(object); // first: without room nothing may be made
        made = newHandle(CreateObject(identifier ? identifier : ""));
    });
}

nk_error* nk_parse(const char* text, size_t length, nk_object** node) {
    return withoutExceptions([&] {
        platform::ParseError fault;
        nk_object*& made = roomFor(node);
        std::optional<xml::Document> parsed =
            platform::parseXml(text ? std::string_view(text, length) : std::string_view(), &fault);
        if (!parsed) {
            throw runtimeError(RuntimeError::TypeMismatch,
                               "The document does not parse: line " + std::to_string(fault.line) +
                                   ", column " + std::to_string(fault.column) + ": " + fault.reason);
        }
        auto document = std::make_shared<xml::Document>(*std::move(parsed));
        const xml::Node root = document->root();
        made = newHandle(New<NodeObject>(std::move(document), root));
    });
}

void nk_object_release(nk_object* object) {
    if (object)
        releaseHandle(object);
}

nk_error* nk_object_share(nk_object* object, nk_object** other) {
    return withoutExceptions([&] {
        const GroupUse use(handlesOf(object));
        nk_object*& made = roomFor(other);
        made = newHandle(object->object, use.group());
    });
}

int32_t nk_object_class(const nk_object* object) {
    return object ? classNumber(&object->object->dynamicClass()) : -1;
}

const void* nk_object_identity(const nk_object* object) {
    return object ? object->object->identity() : nullptr;
}

nk_error* nk_call(nk_object* object, const char* member, const nk_value* arguments, size_t count,
                  nk_value* result, nk_value* results, size_t result_count) {
    return withoutExceptions([&] {
        const GroupUse use(handlesOf(object, arguments, count));
        const Target target = targetOf(*object, member, count);
        GivenArguments given(*target.member, arguments, count);
        std::vector<Value>& values = given.positional; // afterwards one for each parameter
        const Value answer = callMember(*target.object, *target.member, values, given.named);
        ClientValues changed;
        for (size_t index = 0; results && index < result_count; ++index) {
            const bool isResult =
                index < values.size() && (target.member->parameters[index].byReference ||
                                          target.member->parameters[index].type.kind == Type::Kind::Array);
            changed.add(isResult ? values[index] : Value(), use.group());
        }
        handOverOne(answer, use, result);
        changed.handOver(results);
    });
}

nk_error* nk_get(nk_object* object, const char* property, nk_value* value) {
    return nk_call(object, property, nullptr, 0, value, nullptr, 0);
}

nk_error* nk_put(nk_object* object, const char* property, const nk_value* value, const nk_value* indexes,
                 size_t count) {
    return withoutExceptions([&] {
        const GroupUse use(handlesOf(object, indexes, count, value));
        const Target target = targetOf(*object, property, count);
        GivenArguments given(*target.member, indexes, count);
        putMember(*target.object, *target.member, value ? fromClient(*value) : Value(),
                  std::move(given.positional), given.named);
    });
}

nk_error* nk_next(nk_object* object, uint64_t* mark, int* found, nk_value* element) {
    return withoutExceptions([&] {
        const GroupUse use(handlesOf(object));
        const auto& next = object->object->dynamicClass().nextElement;
        if (!next)
            throw runtimeError(RuntimeError::MemberNotFound);
        uint64_t moved = roomFor(mark);
        int& isThere = roomFor(found);
        const std::optional<Value> value = next(*object->object, moved);
        if (value)
            handOverOne(*value, use, element);
        *mark = moved;
        isThere = value ? 1 : 0;
    });
}

int32_t nk_error_number(const nk_error* error) { return orNone(error).number; }
const char* nk_error_source(const nk_error* error) { return orNone(error).source.c_str(); }
const char* nk_error_description(const nk_error* error) { return orNone(error).description.c_str(); }
const char* nk_error_document(const nk_error* error) { return orNone(error).document.c_str(); }
int32_t nk_error_line(const nk_error* error) { return orNone(error).line; }
int32_t nk_error_column(const nk_error* error) { return orNone(error).column; }
const char* nk_error_member(const nk_error* error) { return orNone(error).member.c_str(); }

void nk_error_free(nk_error* error) {
    if (error != &outOfMemory)
        delete error;
}

// Methods keep no reasons yet.
const char* nk_last_reason() {
    // The C client sees the text until its thread asks again. Without memory it sees none.
    thread_local std::string shown;
    try {
        shown = lastReason();
    } catch (const std::bad_alloc&) {
        shown.clear();
    }
    return shown.c_str();
}

const char* nk_version() { return kVersion.data(); }
