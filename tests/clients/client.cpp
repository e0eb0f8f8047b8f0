// A client: it makes every public class by its type and by its name, and lets what the library raises and
// keeps cross the border of a shared library. Exit code 0 when all is well; else the line that says what is
// not.

#include <cstdlib>
#include <iostream>
#include <norvakavlor/norvakavlor.h>

using namespace norvakavlor;

namespace {

void check(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "client: " << what << '\n';
        std::exit(1);
    }
}

template <class T> void make(const char* name) {
    const Ref<Object> made = CreateObject(std::string("NorvaKavlor.") + name);
    check(&New<T>()->dynamicClass() == &made->dynamicClass(), name);
    check(dynamic_cast<T*>(made.get()) != nullptr, name);
}

} // namespace

int main() {
#include "every_class.inc"
    const auto books = New<TextBooks>();
    xml::Document document;
    const xml::Node root = document.createRoot("textBooks");
    books->textBooks->Add(New<TextBook>(), "A");
    books->SaveToXMLNode(document, root);
    check(document.toText().starts_with("<textBooks><"), "a document of its own");
    try {
        books->textBooks->Item("B");
        check(false, "an unknown key");
    } catch (const Error& error) {
        check(error.number() == 5 && usualText(RuntimeError::InvalidProcedureCall) == error.description(),
              "an error");
    }
    // A collection has one table, whichever side of the border made it.
    const Ref<Object> collection = get(*books, "textBooks").toObject();
    check(&collection->dynamicClass() == &New<KeyedCollection<TextBook>>()->dynamicClass(),
          "one table for each class");
    check(get(*collection, "Count").toInt32() == 1 && elementsOf(*collection).size() == 1,
          "late-bound calls");
    check(toText(toDate("2026-11-10 09:30")) == "11/10/2026 9:30:00 AM", "conversions");
    const platform::Notifier none = platform::setNotifier([](const std::string&, const std::string&) {});
    check(!none && kVersion == std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
                                   std::to_string(kVersionPatch),
          "the version");
}
