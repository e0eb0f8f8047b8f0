#pragma once

#include <norvakavlor/runtime/class_info.h>
#include <string>

namespace norvakavlor {

class [[gnu::visibility("default")]] TitleFilename;

/// One entry of a listing.
class TitleFilename final : public Object {
public:
    std::string Title;     ///< text of the document's "title"
    std::string Filename;  ///< the file name alone
    std::string Directory; ///< the location that was listed: a local directory or the web base

    /// Stores the three texts. Always True.
    bool SetValues(const std::string& pTitle, const std::string& pDirectory, const std::string& pFilename);

    /// Reads one document of the object kind `pObjName`; a local directory must end with its separator. A
    /// document without "title" gives an empty Title. False, with nothing changed, when the document cannot
    /// be had or does not parse.
    bool LoadValues(const std::string& pDirectory, const std::string& pFilename, const std::string& pObjName);

    static const ClassInfo& classInfo();
};

} // namespace norvakavlor
