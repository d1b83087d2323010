#pragma once

#include "favorites.h"

#include <span>
#include <string>

namespace pmx::bench {

/// Another INI library doing the same work. Paths are the system's.
struct Peer {
    const char* Name;
    /// It takes only UTF-8: it gets the same file in UTF-8, and its records' texts are UTF-8, so no
    /// conversion is charged to it.
    bool IsUtf8;
    /// Reads the file into records, in the order of their numbers.
    Records (*Load)(const std::string& path);
    /// Replaces the file, as durably as the store does; null when the library does not write.
    void (*Save)(const std::string& path, const Records& records);
};

extern const Peer GlibPeer;
extern const Peer QtPeer;
extern const Peer SimpleIniPeer;
extern const Peer InihPeer;

inline constexpr const char* SectionName = "PMXTemplateList";
inline constexpr const char* CountName = "TemplateNum";
inline constexpr const char* DataName = "TemplateData";

} // namespace pmx::bench
