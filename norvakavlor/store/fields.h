#pragma once

#include <cmath>
#include <norvakavlor/text/convert.h>
#include <norvakavlor/text/error.h>
#include <norvakavlor/xml/document.h>
#include <norvakavlor/xml/path.h>
#include <string>
#include <string_view>
#include <tuple>

/// A document format as one list: which element or attribute holds which member, in written order, for both
/// directions.
///
///     constexpr auto kFields = fields(
///         attributeUnlessEmpty("ID", &Objective::ID),
///         always("module", &Objective::Module),
///         unlessEmpty("skillSet", &Objective::SkillSet));
///
///     bool Objective::LoadFromXMLNode(xml::Node node) { return readFields(kFields, node, *this); }
///     void Objective::SaveToXMLNode(xml::Document&, xml::Node node) const { writeFields(kFields, node,
///     *this); }
///
/// Reading replaces a member when its element or attribute is there and keeps it when not; numbers raise 6
/// and 13 as the conversions do. Writing raises 6 for a double that is no number. Members are text, 16-bit
/// integers, doubles, and booleans that are "true" or "false" in the document, of which only exact "true"
/// reads as True.
namespace norvakavlor {

enum class Place { Element, Attribute };
enum class Written { Always, UnlessEmpty };

template <class Owner, class Member> struct Field {
    std::string_view name;
    Member Owner::*member;
    Place place;
    Written written;
};

/// A child element that is always written.
template <class Owner, class Member>
constexpr Field<Owner, Member> always(std::string_view element, Member Owner::*member) {
    return {element, member, Place::Element, Written::Always};
}

/// A child element that is written only when its text is not empty.
template <class Owner>
constexpr Field<Owner, std::string> unlessEmpty(std::string_view element, std::string Owner::*member) {
    return {element, member, Place::Element, Written::UnlessEmpty};
}

/// An attribute that is always written.
template <class Owner, class Member>
constexpr Field<Owner, Member> attribute(std::string_view name, Member Owner::*member) {
    return {name, member, Place::Attribute, Written::Always};
}

/// An attribute that is written only when it says something: a text that is not empty, a True.
template <class Owner, class Member>
constexpr Field<Owner, Member> attributeUnlessEmpty(std::string_view name, Member Owner::*member) {
    return {name, member, Place::Attribute, Written::UnlessEmpty};
}

template <class... Fields> constexpr std::tuple<Fields...> fields(Fields... rows) { return {rows...}; }

namespace detail {

inline void fromText(std::string_view text, std::string& member) { member = text; }
inline void fromText(std::string_view text, int16_t& member) { member = toInt16(text); }
inline void fromText(std::string_view text, double& member) { member = toDouble(text); }
inline void fromText(std::string_view text, bool& member) { member = text == "true"; }

/// What does not convert is said to be at its node.
template <class Member> void fromText(xml::Node node, std::string_view text, Member& member) {
    try {
        fromText(text, member);
    } catch (const Error& error) {
        throw xml::at(node, error);
    }
}

inline std::string fieldText(const std::string& member) { return member; }
inline std::string fieldText(int16_t member) { return std::to_string(member); }
inline std::string fieldText(double member) {
    // What is no number would be read as none, and its document never again.
    if (!std::isfinite(member))
        throw runtimeError(RuntimeError::Overflow);
    return toText(member);
}
inline std::string fieldText(bool member) { return member ? "true" : "false"; }

inline bool saysNothing(const std::string& member) { return member.empty(); }
inline bool saysNothing(bool member) { return !member; }
template <class Number> bool saysNothing(Number) { return false; }

} // namespace detail

/// Reads one field: its member keeps its value when the document has nothing for it.
template <class Owner, class Member>
void readField(const Field<Owner, Member>& field, xml::Node node, Owner& owner) {
    if (field.place == Place::Attribute) {
        if (const auto text = node.attribute(field.name))
            detail::fromText(node, *text, owner.*field.member);
    } else if (const xml::Node element = node.child(field.name)) {
        detail::fromText(element, element.text(), owner.*field.member);
    }
}

/// Reads every field, in order. Always True, as the classes' loaders report.
template <class... Fields, class Owner>
bool readFields(const std::tuple<Fields...>& list, xml::Node node, Owner& owner) {
    std::apply([&](const auto&... field) { (readField(field, node, owner), ...); }, list);
    return true;
}

template <class Owner, class Member>
void writeField(const Field<Owner, Member>& field, xml::Node node, const Owner& owner) {
    const Member& member = owner.*field.member;
    if (field.written == Written::UnlessEmpty && detail::saysNothing(member))
        return;
    if (field.place == Place::Attribute) {
        node.setAttribute(field.name, detail::fieldText(member));
    } else {
        node.append(field.name, detail::fieldText(member));
    }
}

template <class... Fields, class Owner>
void writeFields(const std::tuple<Fields...>& list, xml::Node node, const Owner& owner) {
    std::apply([&](const auto&... field) { (writeField(field, node, owner), ...); }, list);
}

} // namespace norvakavlor
