#include <norvakavlor/store/title_filename.h>

#include <norvakavlor/runtime/describe.h>
#include <norvakavlor/store/documents.h>

namespace norvakavlor {

bool TitleFilename::SetValues(const std::string& pTitle, const std::string& pDirectory,
                              const std::string& pFilename) {
    Title = pTitle;
    Directory = pDirectory;
    Filename = pFilename;
    return true;
}

bool TitleFilename::LoadValues(const std::string& pDirectory, const std::string& pFilename,
                               const std::string& pObjName) {
    const auto document = readDocumentIn(pObjName, pDirectory, pFilename);
    return document && SetValues(document->root().child("title").text(), pDirectory, pFilename);
}

const ClassInfo& TitleFilename::classInfo() {
    static const ClassInfo info =
        describe<TitleFilename>("TitleFilename",
                                "One entry of a listing: a document's title, file name and place.")
            .property("Title", &TitleFilename::Title, "Text of the document's title.")
            .property("Filename", &TitleFilename::Filename, "The file name alone.")
            .property("Directory", &TitleFilename::Directory,
                      "The local directory or web base that was listed.")
            .method("SetValues", &TitleFilename::SetValues, {"pTitle", "pDirectory", "pFilename"},
                    "Stores the three texts; always True.")
            .method("LoadValues", &TitleFilename::LoadValues, {"pDirectory", "pFilename", "pObjName"},
                    "Reads one document's title; False when it cannot be had or does not parse.");
    return info;
}

} // namespace norvakavlor
