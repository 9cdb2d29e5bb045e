#pragma once

#include <string>
#include <vector>

namespace wicker {

/// What the About box and its system information tell a trader (and a support desk).
struct ProgramFacts {
    std::string version;         ///< "0.1.0"
    std::string build;           ///< compiler and build mode
    std::string dataFolder;      ///< the application folder in use
    std::string platform;        ///< the platform's display name
    std::string platformDetails; ///< its engine and session, when it has any
    std::string os;              ///< product name, kernel, CPU
    std::string qtVersion;       ///< the Qt library the program runs with
    std::string sqliteVersion;
};

/// A library Wicker uses, with its licence.
struct LibraryLicence {
    std::string name;
    std::string licence;
};

/// The compiler and build mode of this program ("GCC 12.2.0, optimised, assertions on").
std::string BuildDescription();

/// One "Label: value" line per fact, CR LF ended, ready to paste into a support request.
/// Facts that are not known say so rather than leaving the line out.
std::string SystemInformationText(const ProgramFacts& facts);

/// The libraries Wicker links, in the order the About box lists them.
const std::vector<LibraryLicence>& Licences();

} // namespace wicker
