#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <norvakavlor/curriculum/textbooks.h>
#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/runtime/value.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/node_object.h>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace norvakavlor {

/// A class that only the tests have: each kind of member and argument that a table can hold, so that what
/// few public members use is exercised the same way natively and through Automation.
class Probe final : public Object {
public:
    std::string Text;
    bool Flag = false;
    int16_t Small = 0;
    int32_t Large = 0;
    double Real = 0;
    Date When;
    Value Anything;
    Ref<TextBook> Book;
    Ref<Object> Held;
    const Ref<KeyedCollection<TextBook>> Books = New<KeyedCollection<TextBook>>();

    std::string Join(const std::string& first, const std::string& second,
                     const std::optional<std::string>& third) const {
        return first + "|" + second + "|" + third.value_or("(none)");
    }

    /// What kind of value arrived.
    std::string KindOf(const Value& value) const {
        static constexpr const char* kNames[] = {"Empty", "Null", "Boolean", "Int16", "Int32",      "Double",
                                                 "Date",  "Text", "Object",  "Array", "ExactNumber"};
        const bool isNothing = value.isObject() && value.isAbsent();
        return isNothing ? "Nothing" : kNames[value.storage().index()];
    }

    bool IsAbsent(const TextBooks* books) const { return books == nullptr; }
    std::string TitleOf(const TextBook& book) const { return book.Title; }

    /// Sets every result; Partly leaves its second one as it was.
    bool Results(int16_t& small, int32_t& large, std::string& text, Value& any) const {
        small = 7;
        large = 70000;
        text = "result";
        any = Value(2.5);
        return true;
    }
    void Partly(Value& first, Value&) const { first = Value("set"); }

    void SwapEnds(const std::shared_ptr<Array>& values) const {
        std::swap(values->at(values->lowerBound), values->at(values->upperBound()));
    }

    void Raise(int32_t number, const std::string& source, const std::string& description) const {
        throw Error(number, source, description);
    }
    void RunOutOfMemory() const { throw std::bad_alloc(); }
    void Fail() const { throw std::runtime_error("a fault of the library"); }

    std::string MarkupOf(xml::Node node) const { return node.markup(); }
    /// Appends to an element, in a way that a save may: attributes, children; and may then fail.
    void Fill(xml::Document&, xml::Node node, bool raises) const {
        node.setAttribute("title", "a \"b\" <c>\n");
        const xml::Node child = node.append("child", "");
        child.setAttribute("id", "1");
        child.append("grandchild", "text & more").append(xml::NodeKind::CData, "", "<raw>");
        node.append(xml::NodeKind::Comment, "", " remark ");
        node.append("none");
        if (raises)
            throw objectError(633, "Probe:Fill", "after the fact");
    }

    static const ClassInfo& classInfo() {
        static const ClassInfo info =
            describe<Probe>("Probe", "Each kind of member, for tests.")
                .property("Text", &Probe::Text, "A text.")
                .property("Flag", &Probe::Flag, "A boolean.")
                .property("Small", &Probe::Small, "A 16-bit integer.")
                .property("Large", &Probe::Large, "A 32-bit integer.")
                .property("Real", &Probe::Real, "A double.")
                .property("When", &Probe::When, "A date.")
                .property("Anything", &Probe::Anything, "Any value.")
                .property("Book", &Probe::Book, "A textbook or Nothing.")
                .property("Held", &Probe::Held, "Any object or Nothing.")
                .readOnly("Books", &Probe::Books, "A collection.")
                .method("Join", &Probe::Join, {"first", "second", {"third", optional}}, "Joins texts.")
                .method("KindOf", &Probe::KindOf, {{"value", optional}}, "Names the kind of a value.")
                .method("IsAbsent", &Probe::IsAbsent, {{"books", optional}}, "Is there no object?")
                .method("TitleOf", &Probe::TitleOf, {"book"}, "Needs an object.")
                .method("Results", &Probe::Results,
                        {byRefResult("small"), byRefResult("large"), byRefResult("text"), byRefResult("any")},
                        "Gives results by reference.")
                .method("Partly", &Probe::Partly, {byRefResult("first"), byRefResult("second")},
                        "Sets one result of two.")
                .method("SwapEnds", &Probe::SwapEnds, {"values"}, "Swaps an array's ends in place.")
                .method("Raise", &Probe::Raise, {"number", "source", "description"}, "Raises an error.")
                .method("RunOutOfMemory", &Probe::RunOutOfMemory, {}, "Fails for want of memory.")
                .method("Fail", &Probe::Fail, {}, "Fails unexpectedly.")
                .method("MarkupOf", &Probe::MarkupOf, {"node"}, "A node as it is written.")
                .method("Fill", &Probe::Fill, {"document", "node", {"raises", optional}},
                        "Fills an element.");
        return info;
    }
};

} // namespace norvakavlor
