#pragma once

#include "host/CPmxDocument.h"
#include "support/failure_plan.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::test {

/// The functions of the host's libraries that can be told to fail.
enum class HostCall {
    Create,
    Destroy,
    Assign,
    Load,
    Save,
    GetTable,
    SetTable,
    SetLevel,
    SetName,
    Command,
    CheckFileName
};

/// How they fail: with their failure result, or by raising an error. A function without a failure result
/// (GetTable, SetLevel, Command, Destroy) only raises. Destroy does its work before it raises.
enum class HostFailure { Refuse, Raise };

/// What the host's functions raise.
struct HostError : std::runtime_error {
    HostError() : std::runtime_error("an error of the host") {}
};

/// The content of a document.
struct HostContent {
    _LM_DOCUMENTLAYOUTTABLE Table{};
    std::int32_t Level = 1;
    std::string Name;
};

/// A table that differs from that of any other seed at every byte.
_LM_DOCUMENTLAYOUTTABLE TableOf(unsigned char seed);

/// The table of a fresh document, and of the three standard commands.
inline constexpr unsigned char FreshSeed = 1;
inline constexpr unsigned char TwoUpDuplexSeed = 3;
inline constexpr unsigned char BookletSeed = 4;
inline constexpr unsigned char UpperLeftSeed = 5;

bool SameTable(const _LM_DOCUMENTLAYOUTTABLE& left, const _LM_DOCUMENTLAYOUTTABLE& right);

/// The host's libraries of the unit tests, as long as this object lives: PmxDocMgr and QrtCommon with
/// documents in memory and favorite files of a trivial format. One at a time.
class FakeHost {
public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    FailurePlan<HostCall, HostFailure> Plan;

    /// How a function raises an error; must not return.
    std::function<void()> RaiseError = [] { throw HostError(); };

    /// Documents that exist at present.
    std::size_t LiveDocuments = 0;

    /// The paths that documents were read from and written to, failed attempts included, and whether the
    /// options of the last reading were null.
    std::vector<std::string> LoadedPaths;
    std::vector<std::string> SavedPaths;
    bool LoadOptionsWereNull = true;

    /// The flag of the last SetTable.
    std::int32_t SetTableFlag = -1;

    /// CheckFileName accepts whatever it is asked.
    bool AcceptEveryFileName = false;

    /// Writes a favorite file.
    static void WriteFavorite(const TempFolder& folder, std::string_view fileName,
                              const HostContent& content);

    /// Reads a favorite file; throws std::runtime_error when it is none.
    static HostContent ReadFavorite(const TempFolder& folder, std::string_view fileName);

    /// The content of a document of this host.
    static HostContent ContentOf(const CPmxDocument& document);
};

} // namespace pmx::test
