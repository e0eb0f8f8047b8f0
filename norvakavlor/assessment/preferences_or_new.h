#pragma once

#include <norvakavlor/assessment/preferences.h>
#include <norvakavlor/xml/document.h>

/// The preferences inside the document of an exam or exam list; may be Nothing.
namespace norvakavlor {

/// The preferences, made on first use.
inline Preferences& preferencesOrNew(Ref<Preferences>& preferences) {
    if (!preferences)
        preferences = New<Preferences>();
    return *preferences;
}

/// Reads the "pref" child of the container's element, if it has one.
inline void loadOwnPreferences(Ref<Preferences>& preferences, xml::Node container) {
    if (const xml::Node pref = container.child("pref"))
        preferencesOrNew(preferences).LoadFromXMLNode(pref);
}

/// "pref" is always written; without preferences, a new object's are.
inline void saveOwnPreferences(const Ref<Preferences>& preferences, xml::Document& document,
                               xml::Node container) {
    const Ref<Preferences> written = preferences ? preferences : New<Preferences>();
    written->SaveToXMLNode(document, container.append("pref"));
}

} // namespace norvakavlor
