#pragma once

#include <exception>
#include <functional>
#include <norvakavlor/runtime/keyed_collection.h>
#include <norvakavlor/store/document_names.h>
#include <norvakavlor/store/documents.h>
#include <norvakavlor/store/members.h>
#include <norvakavlor/store/reading.h>
#include <norvakavlor/xml/document.h>
#include <norvakavlor/xml/path.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The pattern of every class that is a document: one way to load, to save, and to walk members.
namespace norvakavlor {

/// Loads a document and gives its root to `reader`, whose result it has. False when the document cannot be
/// had or does not parse; what the reader raises propagates.
template <class Read>
bool readFrom(std::string_view kind, const std::string& location, Read reader,
              std::string_view parameters = {}) {
    return Operation("load", kind, location).run([&] {
        const auto document = readDocument(kind, location, parameters);
        return document && document->read(reader);
    });
}

/// Loads a document and hands its root to the object's LoadFromXMLNode with what else that takes:
/// `return loadFrom(*this, "Objectives", location, textBooks);`. False, with the object as it was, when the
/// document cannot be had or does not parse; what the reader raises propagates.
template <class Class, class... Context>
bool loadFrom(Class& object, std::string_view kind, const std::string& location, Context&&... context) {
    return readFrom(kind, location, [&](xml::Node root) {
        return object.LoadFromXMLNode(root, std::forward<Context>(context)...);
    });
}

/// Builds a new document by calling `fill(document, root)` and stores it. False only when it is not proven
/// that the server took it; the user has then been shown why.
template <class Fill> bool saveAs(const DocumentNames& names, const std::string& location, Fill fill) {
    xml::Document document;
    fill(document, document.createRoot(names.root));
    return writeDocument(names.kind, location, document);
}

/// Tells a collector of an element whose member has no ID. A comment, which is a member as well, is none.
template <class Member> void noteMissingID(xml::Node node, const Member& member) {
    if constexpr (requires { member.ID; }) {
        if (FaultCollector::current() && node.kind() == xml::NodeKind::Element && member.ID.empty())
            noteFault({xml::placeOf(node), "there is no ID", 0, FaultKind::Missing, {}, "id"});
    }
}

/// The members of a document that has parsed, none of them added yet.
///
///     auto loaded = LoadedMembers<Task>::from(kKind, location, [&](xml::Node node) { return readTask(node);
///     }); return loaded && loaded->addEach([&](const Ref<Task>& task) { add(task); });
///
/// Members are made while the document is being parsed, and are added when it is known to parse: one that
/// does not changes nothing. What a member raises waits for the members before it.
template <class Member> class LoadedMembers {
public:
    /// `read(node)` makes a member of a child of the root, whatever its name; a null one stops the loading.
    /// Nothing when the document cannot be had or does not parse.
    template <class Read>
    static std::optional<LoadedMembers> from(std::string_view kind, const std::string& location, Read read,
                                             std::string_view parameters = {}) {
        LoadedMembers loaded;
        loaded.location_ = location;
        const size_t before = faultCount();
        loaded.document_ = readMembers(
            kind, location, [&](xml::Node node, std::string_view text) { loaded.take(node, text, read); },
            parameters);
        if (loaded.document_)
            loaded.document_->locateFaults(before);
        return loaded.document_ ? std::optional(std::move(loaded)) : std::nullopt;
    }

    /// As norvakavlor::isOfKind.
    bool isOfKind(const DocumentNames& names) const { return norvakavlor::isOfKind(*document_, names); }
    /// The root element with its attributes, without its children.
    xml::Node root() const { return document_->root(); }
    size_t count() const { return members_.size(); }
    /// Runs a reader of the root, as SourceDocument does.
    template <class Read> auto read(Read reader) const { return document_->read(reader); }

    /// Hands each member to `add`, in order; what that raises ends it, and the members before stay. Then
    /// raises what reading the next member raised; False when that one stopped the loading.
    template <class Add> bool addEach(Add add) {
        return document_->read([&](xml::Node) {
            for (auto& made : members_) {
                reads([&] { add(std::exchange(made.first, nullptr)); },
                      [&](const Error& error) { return error.at(placeOf(made.second)); });
            }
            if (fault_)
                std::rethrow_exception(fault_);
            return !stopped_;
        });
    }

private:
    template <class Read> void take(xml::Node node, std::string_view text, Read& read) {
        if (fault_ || stopped_)
            return;
        const size_t position = elements_;
        elements_ += node.kind() == xml::NodeKind::Element ? 1 : 0;
        try {
            reads(
                [&] {
                    Ref<Member> member = read(node);
                    stopped_ = !member;
                    if (!member)
                        return;
                    noteMissingID(node, *member);
                    members_.emplace_back(std::move(member), position);
                },
                [&](const Error& error) { return ofMember(xml::at(node, error), position); });
        } catch (const Error& error) {
            fault_ = std::make_exception_ptr(locatedIn(text, location_, error));
        } catch (const std::exception&) {
            fault_ = std::current_exception();
        }
    }

    /// Of a member whose node is gone.
    ErrorPlace placeOf(size_t position) const {
        return {.member = std::string(root().name()) + "/*[" + std::to_string(position + 1) + "]",
                .steps = {position}};
    }

    std::optional<SourceDocument> document_;
    std::string location_;
    std::vector<std::pair<Ref<Member>, size_t>> members_; ///< each with its position among the elements
    size_t elements_ = 0;                                 ///< that were taken
    std::exception_ptr fault_;
    bool stopped_ = false;
};

/// Creates a member and lets it read itself; null when it says False.
template <class Member, class... Context> Ref<Member> readMember(xml::Node node, Context&... context) {
    auto member = New<Member>();
    return member->LoadFromXMLNode(node, context...) ? member : nullptr;
}

/// Adds a member under its ID. One whose ID is taken is a fault: 457.
template <class Member>
void addMember(KeyedCollection<Member>& members, const Ref<Member>& member, const std::string& id) {
    if (!members.tryAdd(member, id))
        reportFault(runtimeError(RuntimeError::KeyAlreadyAssociated), FaultKind::Duplicate, id);
}

/// Creates a member for every child of `node`, whatever its name (a comment is a member with empty fields,
/// which readers of the format rely on), lets it read itself and adds it under its ID. The collection is not
/// emptied first, and what was added before a fault stays. Stops with False when a member does.
template <class Member, class... Context>
bool loadMembers(KeyedCollection<Member>& members, xml::Node node, Context&... context) {
    bool goesOn = true;
    for (const xml::Node child : xml::children(node)) {
        readsNode(child, [&] {
            const auto member = readMember<Member>(child, context...);
            goesOn = static_cast<bool>(member);
            if (!member)
                return;
            noteMissingID(child, *member);
            addMember(members, member, member->ID);
        });
        if (!goesOn)
            return false;
    }
    return true;
}

/// The same for the root of the document at a location; False, with nothing added, when that cannot be had or
/// does not parse.
template <class Member, class... Context>
bool loadMembersFrom(KeyedCollection<Member>& members, std::string_view kind, const std::string& location,
                     Context&... context) {
    return Operation("load", kind, location).run([&] {
        auto loaded = LoadedMembers<Member>::from(
            kind, location, [&](xml::Node node) { return readMember<Member>(node, context...); });
        return loaded &&
               loaded->addEach([&](const Ref<Member>& member) { addMember(members, member, member->ID); });
    });
}

/// Stores a document member by member: `append(member, document, root)` appends one to the root.
/// `begin(root)` may set the root's attributes. False only when it is not proven that the server took it.
template <class Member, class Append>
bool saveEach(
    const DocumentNames& names, const std::string& location, const KeyedCollection<Member>& members,
    Append append, const std::function<void(xml::Node)>& begin = [](xml::Node) {}) {
    auto at = members.begin();
    return writeMembers(names, location, begin, [&](xml::Document& document, xml::Node root) {
        if (at == members.end())
            return false;
        append(**at, document, root);
        ++at;
        return true;
    });
}

/// Appends one element for each member, in order, and lets the member fill it.
template <class Member>
void saveMembers(const KeyedCollection<Member>& members, std::string_view element, xml::Document& document,
                 xml::Node node) {
    for (const Ref<Member>& member : members)
        member->SaveToXMLNode(document, node.append(element));
}

/// The same as a document of its own.
template <class Member>
bool saveMembersAs(const DocumentNames& names, const std::string& location,
                   const KeyedCollection<Member>& members, std::string_view element) {
    return saveEach(names, location, members,
                    [&](const Member& member, xml::Document& document, xml::Node root) {
                        member.SaveToXMLNode(document, root.append(element));
                    });
}

} // namespace norvakavlor
