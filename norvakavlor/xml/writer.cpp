#include <norvakavlor/xml/writer.h>

#include <algorithm>
#include <array>
#include <norvakavlor/xml/arena.h>
#include <norvakavlor/xml/characters.h>
#include <string_view>

namespace norvakavlor::xml {
namespace {

/// What becomes of each byte: written as it is (empty), replaced, or the start of a longer character.
struct Escapes {
    std::array<std::string_view, 256> replacement;
};

constexpr std::string_view kMultibyte = "multibyte";

/// Controls have no place in XML; bytes of longer characters are looked at one by one.
constexpr Escapes plainEscapes() {
    Escapes escapes;
    for (size_t byte = 0; byte < 0x20; ++byte)
        escapes.replacement[byte] = kReplacement;
    escapes.replacement['\t'] = escapes.replacement['\n'] = escapes.replacement['\r'] = {};
    for (size_t byte = 0x80; byte < 0x100; ++byte)
        escapes.replacement[byte] = kMultibyte;
    return escapes;
}

/// A carriage return as such would come back as a line feed.
constexpr Escapes textEscapes() {
    Escapes escapes = plainEscapes();
    escapes.replacement['<'] = "&lt;";
    escapes.replacement['>'] = "&gt;";
    escapes.replacement['&'] = "&amp;";
    escapes.replacement['\r'] = "&#13;";
    return escapes;
}

/// Tabs and line feeds as such would come back as blanks.
constexpr Escapes attributeEscapes() {
    Escapes escapes = textEscapes();
    escapes.replacement['"'] = "&quot;";
    escapes.replacement['\t'] = "&#9;";
    escapes.replacement['\n'] = "&#10;";
    return escapes;
}

constexpr Escapes kPlain = plainEscapes();
constexpr Escapes kText = textEscapes();
constexpr Escapes kAttribute = attributeEscapes();

/// The length of the character at a place, or 0 when XML has no place for it.
size_t allowedLength(std::string_view text, size_t position) {
    const size_t length = characterLength(text, position);
    const std::string_view character = text.substr(position, length);
    return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF" ? 0 : length; // U+FFFE, U+FFFF
}

void writeEscaped(std::string_view text, const Escapes& escapes, std::string& markup) {
    size_t written = 0;
    for (size_t at = 0; at < text.size();) {
        std::string_view replacement = escapes.replacement[static_cast<unsigned char>(text[at])];
        size_t length = 1;
        if (replacement.data() == kMultibyte.data()) {
            length = allowedLength(text, at);
            replacement = length > 0 ? std::string_view() : kReplacement;
            // Of a forbidden character all bytes are replaced by one mark, of a malformed one this byte.
            if (length == 0)
                length = std::max<size_t>(characterLength(text, at), 1);
        }
        if (!replacement.empty()) {
            markup.append(text, written, at - written).append(replacement);
            written = at + length;
        }
        at += length;
    }
    markup.append(text, written);
}

/// Text in which `forbidden` cannot stand; where it does, `replacement` takes its place.
void writeWithout(std::string_view forbidden, std::string_view replacement, std::string_view text,
                  std::string& markup) {
    for (size_t found = text.find(forbidden); found != std::string_view::npos; found = text.find(forbidden)) {
        writeEscaped(text.substr(0, found), kPlain, markup);
        markup.append(replacement);
        text.remove_prefix(found + forbidden.size());
    }
    writeEscaped(text, kPlain, markup);
}

void writeCData(std::string_view text, std::string& markup) {
    // Only text outside of a section can say that it holds a carriage return.
    if (text.find('\r') != std::string_view::npos)
        return writeEscaped(text, kText, markup);
    markup.append("<![CDATA[");
    writeWithout("]]>", "]]]]><![CDATA[>", text, markup);
    markup.append("]]>");
}

void writeComment(std::string_view text, std::string& markup) {
    markup.append("<!--");
    char former = '\0';
    for (size_t start = 0; start <= text.size();) {
        // A comment holds no two hyphens in a row and ends in none: a blank parts them.
        const size_t end = std::min(text.find('-', start), text.size());
        writeEscaped(text.substr(start, end - start), kPlain, markup);
        former = end > start ? '\0' : former;
        if (end < text.size())
            markup.append(former == '-' ? " -" : "-");
        former = end < text.size() ? '-' : former;
        start = end + 1;
    }
    markup.append(former == '-' ? " -->" : "-->");
}

void writeInstruction(const NodeData* node, std::string& markup) {
    markup.append("<?").append(node->name->text);
    if (!node->value.empty()) {
        markup.append(" ");
        writeWithout("?>", "? >", node->value, markup);
    }
    markup.append("?>");
}

bool isOpen(const NodeData* element) { return element->inside.lastChild || element->hasEmptyText(); }

void writeStart(const NodeData* element, bool isOpen, std::string& markup) {
    markup.append("<").append(element->name->text);
    for (const AttributeData* a = element->inside.firstAttribute; a; a = a->next) {
        markup.append(" ").append(a->name->text).append("=\"");
        writeEscaped(a->value, kAttribute, markup);
        markup.append("\"");
    }
    markup.append(isOpen ? ">" : "/>");
}

void writeEnd(const NodeData* element, std::string& markup) {
    markup.append("</").append(element->name->text).append(">");
}

void writeOne(const NodeData* node, std::string& markup) {
    switch (node->kind()) {
    case NodeKind::Document:
        return;
    case NodeKind::Element:
        return writeStart(node, isOpen(node), markup);
    case NodeKind::Text:
        return writeEscaped(node->value, kText, markup);
    case NodeKind::CData:
        return writeCData(node->value, markup);
    case NodeKind::Comment:
        return writeComment(node->value, markup);
    case NodeKind::ProcessingInstruction:
        return writeInstruction(node, markup);
    }
}

} // namespace

void write(const NodeData* top, std::string& markup) {
    const auto leave = [&](const NodeData* node) {
        if (node->kind() == NodeKind::Element && isOpen(node))
            writeEnd(node, markup);
    };
    for (const NodeData* at = top; at; at = following(at, top, leave))
        writeOne(at, markup);
}

MemberWriter::MemberWriter(std::string_view rootName) : root_(document_.createRoot(rootName).data_) {}

void MemberWriter::beginMember() {
    if (!members_.next)
        members_ = document_.arena_->mark();
}

void MemberWriter::endMember() {
    if (root_->inside.lastChild) {
        if (!hasMembers_)
            writeStart(root_, true, text_);
        hasMembers_ = true;
        for (const NodeData* member = root_->firstChild(); member; member = member->nextSibling())
            write(member, text_);
        root_->inside.lastChild = nullptr;
        document_.arena_->rewind(members_);
    }
    if (isDone_ && hasMembers_) {
        writeEnd(root_, text_);
    } else if (isDone_) {
        write(root_, text_);
    }
}

} // namespace norvakavlor::xml
