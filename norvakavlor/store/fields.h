#pragma once

#include <norvakavlor/runtime/convert.h>
#include <norvakavlor/xml/document.h>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

/// A document format as one list: which element holds which member, in written order, for both directions.
///
///     constexpr auto kFields = fields(
///         always("id", &Objective::ID),
///         unlessEmpty("skillSet", &Objective::SkillSet));
///
///     bool Objective::LoadFromXMLNode(xml::Node node) { return read(kFields, node, *this); }
///     void Objective::SaveToXMLNode(xml::Document&, xml::Node node) const { write(kFields, node, *this); }
///
/// Reading replaces a member when its element is there and keeps it when not; numbers raise 6 and 13 as the
/// conversions do. Members are text, 16-bit integers or doubles.
namespace norvakavlor {

/// When a field's element is written.
enum class Written { Always, UnlessEmpty };

template <class Owner, class Member>
struct Field {
    std::string_view element;
    Member Owner::*member;
    Written written;
};

/// A child element that is always written.
template <class Owner, class Member>
constexpr Field<Owner, Member> always(std::string_view element, Member Owner::*member) {
    return {element, member, Written::Always};
}

/// A child element that is written only when its text is not empty.
template <class Owner>
constexpr Field<Owner, std::string> unlessEmpty(std::string_view element, std::string Owner::*member) {
    return {element, member, Written::UnlessEmpty};
}

template <class... Fields>
constexpr std::tuple<Fields...> fields(Fields... rows) {
    return {rows...};
}

namespace detail {

inline void fromText(const std::string& text, std::string& member) { member = text; }
inline void fromText(const std::string& text, int16_t& member) { member = toInt16(text); }
inline void fromText(const std::string& text, double& member) { member = toDouble(text); }

inline std::string fieldText(const std::string& member) { return member; }
inline std::string fieldText(int16_t member) { return std::to_string(member); }
inline std::string fieldText(double member) { return toText(member); }

} // namespace detail

/// Reads one field: its member keeps its value when the element is absent.
template <class Owner, class Member>
void read(const Field<Owner, Member>& field, xml::Node node, Owner& owner) {
    if (const xml::Node element = node.child(field.element))
        detail::fromText(element.text(), owner.*field.member);
}

/// Reads every field, in order. Always True, as the classes' loaders report.
template <class... Fields, class Owner>
bool read(const std::tuple<Fields...>& list, xml::Node node, Owner& owner) {
    std::apply([&](const auto&... field) { (read(field, node, owner), ...); }, list);
    return true;
}

template <class Owner, class Member>
void write(const Field<Owner, Member>& field, xml::Node node, const Owner& owner) {
    const std::string text = detail::fieldText(owner.*field.member);
    if (field.written == Written::Always || !text.empty())
        node.append(field.element, text);
}

template <class... Fields, class Owner>
void write(const std::tuple<Fields...>& list, xml::Node node, const Owner& owner) {
    std::apply([&](const auto&... field) { (write(field, node, owner), ...); }, list);
}

} // namespace norvakavlor
