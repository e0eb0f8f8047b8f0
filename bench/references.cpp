#include "operation.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <expat.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <memory>
#include <pugixml.hpp>

// The field's parsers on the same bytes. Each gets the text ready-made and does nothing with what it finds.
namespace norvakavlor::bench {
namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s failed\n", what);
    std::exit(1);
}

/// One round over the bytes of a document, or of every file in a folder.
template <class Parse>
std::function<Round(const Documents&)> over(const char* name, bool isFolder, Parse parse) {
    return [name, isFolder, parse](const Documents& documents) -> Round {
        std::vector<std::string> texts;
        if (isFolder) {
            for (const std::string& path : filesOf(documents.sized(name)))
                texts.push_back(readBytes(path));
        } else {
            texts.push_back(readBytes(documents.document(name)));
        }
        return [texts = std::move(texts), parse] {
            std::vector<std::function<void()>> kept;
            for (const std::string& text : texts)
                kept.push_back(parse(text));
            return keep(std::move(kept));
        };
    };
}

std::function<void()> libxmlTree(const std::string& text) {
    const xmlDocPtr tree =
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NOBLANKS);
    if (!tree)
        fail("libxml2");
    return keep(std::shared_ptr<xmlDoc>(tree, xmlFreeDoc));
}

std::function<void()> libxmlEvents(const std::string& text) {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    size_t events = 0;
    handler.startElementNs = [](void* count, const xmlChar*, const xmlChar*, const xmlChar*, int,
                                const xmlChar**, int, int,
                                const xmlChar**) { ++*static_cast<size_t*>(count); };
    handler.characters = [](void* count, const xmlChar*, int) { ++*static_cast<size_t*>(count); };
    if (xmlSAXUserParseMemory(&handler, &events, text.data(), static_cast<int>(text.size())) != 0)
        fail("libxml2's events");
    return keep(events);
}

std::function<void()> expatEvents(const std::string& text) {
    const XML_Parser parser = XML_ParserCreate(nullptr);
    size_t events = 0;
    XML_SetUserData(parser, &events);
    XML_SetElementHandler(
        parser, [](void* count, const XML_Char*, const XML_Char**) { ++*static_cast<size_t*>(count); },
        [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser,
                                [](void* count, const XML_Char*, int) { ++*static_cast<size_t*>(count); });
    if (XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) != XML_STATUS_OK)
        fail("expat");
    XML_ParserFree(parser);
    return keep(events);
}

/// What is to be had for the files of a folder at the least: their bytes, then also their events.
Round readFiles(const Documents& documents, std::function<void()> (*parse)(const std::string&)) {
    return [folder = documents.sized("attempts"), parse] {
        for (const std::string& path : filesOf(folder)) {
            const std::string text = readBytes(path);
            if (parse)
                parse(text);
        }
        return keep(0);
    };
}

std::function<void()> pugiTree(const std::string& text) {
    auto tree = std::make_shared<pugi::xml_document>();
    if (!tree->load_buffer(text.data(), text.size()))
        fail("pugixml");
    return keep(tree);
}

template <class Parse> void add(std::vector<Operation>& all, const std::string& tool, Parse parse) {
    for (const char* name : {"questionpool", "taskpool", "students", "exam"})
        all.push_back({tool + " " + name, over(name, false, parse), nullptr});
    for (const char* name : {"class", "attempts"})
        all.push_back({tool + " " + name, over(name, true, parse), nullptr});
}

} // namespace

std::vector<Operation> references() {
    std::vector<Operation> all;
    add(all, "libxml2 tree", libxmlTree);
    add(all, "libxml2 events", libxmlEvents);
    add(all, "expat events", expatEvents);
    add(all, "pugixml tree", pugiTree);
    all.push_back({"files read attempts", [](const Documents& d) { return readFiles(d, nullptr); }, nullptr});
    all.push_back({"files read, expat events attempts",
                   [](const Documents& d) { return readFiles(d, expatEvents); }, nullptr});
    return all;
}

} // namespace norvakavlor::bench
