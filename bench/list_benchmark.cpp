#include "durable.h"
#include "favorites.h"
#include "limit.h"
#include "peers/peers.h"

#include "PMXTemplUI.h"
#include "platform/posix/code_page.h"

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <ctime>
#include <functional>
#include <map>
#include <stdexcept>
#include <vector>

#include <malloc.h>

namespace pmx::bench {

namespace {

constexpr std::array<std::size_t, 4> Sizes = {20, 1000, 10000, 100000};
constexpr std::array<std::size_t, 2> VerifiedSizes = {20, 1000};
constexpr std::array<const Peer*, 4> Peers = {&GlibPeer, &QtPeer, &SimpleIniPeer, &InihPeer};

using Seconds = std::chrono::duration<double>;

/// Processor time of this thread: what loading costs, whoever else runs on the machine.
struct ThreadClock {
    static Seconds Now() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
};

/// Elapsed time: what saving costs, waiting for the disk included.
struct ElapsedClock {
    static Seconds Now() { return std::chrono::steady_clock::now().time_since_epoch(); }
};

/// Measures `work` alone. What it returns is destroyed, and `prepare` runs, outside the measured time.
template <typename Clock, typename Prepare, typename Work>
void Measure(benchmark::State& state, Prepare prepare, Work work) {
    for ([[maybe_unused]] auto _ : state) {
        auto prepared = prepare();
        const Seconds begin = Clock::Now();
        [[maybe_unused]] auto result = work(prepared);
        state.SetIterationTime((Clock::Now() - begin).count());
    }
}

/// The favorites of one size in all the forms that are measured.
class Data {
public:
    explicit Data(std::size_t count) : Folder(count), Favorites(MakeFavorites(count)) {
        for (std::unique_ptr<CPMXTemplUIListData>& record : MakeFavorites(count)) {
            record->SetName(posix::ToUtf8(record->GetName()));
            record->SetFileName(posix::ToUtf8(record->GetFileName()));
            Utf8Favorites.push_back(std::move(record));
        }
        ReplaceDurably(Path(true), posix::ToUtf8(ReadBytes(Path(false))));
    }

    std::size_t Count() const { return Folder.Count(); }
    const FavoritesFolder& GetFolder() const { return Folder; }
    const Records& GetFavorites(bool isUtf8) const { return isUtf8 ? Utf8Favorites : Favorites; }

    /// The list file, or the same in UTF-8.
    std::string Path(bool isUtf8) const { return Native(isUtf8 ? "utf8.ini" : ListFileName); }

    /// A file for somebody's saving.
    std::string SavePath(const std::string& name) const { return Native(name + ".ini"); }

    static const Data& Of(std::size_t count) {
        static std::map<std::size_t, Data> all;
        return all.try_emplace(count, count).first->second;
    }

private:
    std::string Native(const std::string& name) const { return posix::NativePath(Folder.Path(name)); }

    FavoritesFolder Folder;
    Records Favorites;
    Records Utf8Favorites;
};

using Run = std::function<void(benchmark::State&, const Data&)>;

void Register(const std::string& name, std::size_t count, const Run& run) {
    benchmark::RegisterBenchmark((name + '/' + std::to_string(count)).c_str(),
                                 [run, count](benchmark::State& state) { run(state, Data::Of(count)); })
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond);
}

void LoadWithStore(benchmark::State& state, const Data& data) {
    Measure<ThreadClock>(
        state, [&] { return data.GetFolder().Open(); }, [](auto& list) { return list->LoadList(); });
}

void LoadWithLimit(benchmark::State& state, const Data& data) {
    Measure<ThreadClock>(
        state, [&] { return data.Path(false); }, [](const std::string& path) { return LoadAtLimit(path); });
}

/// A changed time keeps libraries from answering out of what they remember of the file.
void LoadWithPeer(benchmark::State& state, const Data& data, const Peer& peer) {
    const auto touchedPath = [&] {
        std::string path = data.Path(peer.IsUtf8);
        Touch(path);
        return path;
    };
    Measure<ThreadClock>(state, touchedPath, [&](const std::string& path) { return peer.Load(path); });
}

std::unique_ptr<CPMXTemplUIListDataArray> LoadedList(const Data& data) {
    std::unique_ptr<CPMXTemplUIListDataArray> list = data.GetFolder().Open();
    if (!list->LoadList() || list->GetSize() != static_cast<std::int64_t>(data.Count())) {
        throw std::runtime_error("the store does not load its own list");
    }
    return list;
}

constexpr auto NoPreparation = [] { return 0; };

void SaveWithStore(benchmark::State& state, const Data& data) {
    const auto list = LoadedList(data);
    Measure<ElapsedClock>(state, NoPreparation, [&](int) { return list->WriteListFile(); });
}

void SaveWith(benchmark::State& state, const Data& data, const std::string& name, bool isUtf8,
              void (*save)(const std::string&, const Records&)) {
    const std::string path = data.SavePath(name);
    save(path, data.GetFavorites(isUtf8)); // the measured ones replace a file, as the store's do
    Measure<ElapsedClock>(state, NoPreparation, [&](int) {
        save(path, data.GetFavorites(isUtf8));
        return 0;
    });
}

void CopyOut(benchmark::State& state, const Data& data) {
    void* const list = EX_CreateTemplList(data.GetFolder().Path().c_str(), nullptr, nullptr);
    std::vector<char> buffer(static_cast<std::size_t>(EX_GetTemplListSize(list, PMX_LEVEL_DOCUMENT)));
    std::int64_t count = 0;
    Measure<ThreadClock>(state, NoPreparation, [&](int) {
        return EX_GetAllTemplInfo(list, PMX_LEVEL_DOCUMENT, buffer.data(),
                                  static_cast<std::int64_t>(buffer.size()), &count);
    });
    EX_DestroyTemplList(list);
    if (count != static_cast<std::int64_t>(data.Count())) {
        state.SkipWithError("not all summaries were copied");
    }
}

constexpr const char* UnusedName = "no favorite's name";

void CheckName(benchmark::State& state, const Data& data) {
    const auto list = LoadedList(data);
    Measure<ThreadClock>(state, NoPreparation, [&](int) { return list->CheckName(UnusedName); });
}

void CheckUniqueName(benchmark::State& state, const Data& data) {
    const auto list = LoadedList(data);
    Measure<ThreadClock>(state, NoPreparation, [&](int) { return list->IsNameUnique(0, UnusedName); });
}

void RegisterAll() {
    for (const std::size_t count : Sizes) {
        Register("load/store", count, LoadWithStore);
        Register("load/limit", count, LoadWithLimit);
        Register("save/store", count, SaveWithStore);
        Register("save/limit", count, [](benchmark::State& state, const Data& data) {
            SaveWith(state, data, "limit", false, SaveAtLimit);
        });
        for (const Peer* const peer : Peers) {
            const std::string name = peer->Name;
            Register("load/" + name, count,
                     [peer](benchmark::State& state, const Data& data) { LoadWithPeer(state, data, *peer); });
            if (peer->Save != nullptr) {
                Register("save/" + name, count, [peer](benchmark::State& state, const Data& data) {
                    SaveWith(state, data, peer->Name, peer->IsUtf8, peer->Save);
                });
            }
        }
        Register("copy-out/store", count, CopyOut);
        Register("check-name/store", count, CheckName);
        Register("unique-name/store", count, CheckUniqueName);
    }
}

void Require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

void VerifyStore(const Data& data) {
    const auto list = LoadedList(data);
    Records loaded;
    for (std::int64_t index = 0; index < list->GetSize(); ++index) {
        loaded.push_back(std::make_unique<CPMXTemplUIListData>());
        *loaded.back() = *list->GetAt(index);
    }
    Require(AreEqual(loaded, data.GetFavorites(false)), "the store loads something else");
    Require(AreEqual(LoadAtLimit(data.Path(false)), data.GetFavorites(false)),
            "the limit loads something else");
    SaveAtLimit(data.SavePath("limit"), data.GetFavorites(false));
    Require(ReadBytes(data.SavePath("limit")) == ReadBytes(data.Path(false)),
            "the limit saves something else");
}

void VerifyPeer(const Data& data, const Peer& peer) {
    const std::string name = peer.Name;
    const Records& favorites = data.GetFavorites(peer.IsUtf8);
    Require(AreEqual(peer.Load(data.Path(peer.IsUtf8)), favorites), name + " loads something else");
    if (peer.Save != nullptr) {
        peer.Save(data.SavePath(name), favorites);
        Require(AreEqual(peer.Load(data.SavePath(name)), favorites), name + " saves something else");
    }
}

/// Keeps the heap from giving memory back to the system between iterations: how long the system takes to hand
/// it out again is the same for all and says nothing about any of them.
void KeepHeap() {
    constexpr int Gigabyte = 1 << 30;
    mallopt(M_TRIM_THRESHOLD, Gigabyte);
    mallopt(M_MMAP_THRESHOLD, Gigabyte);
    mallopt(M_TOP_PAD, Gigabyte / 16);
}

/// Comparing is fair only between programs that do the same.
void VerifySameResults() {
    for (const std::size_t count : VerifiedSizes) {
        VerifyStore(Data::Of(count));
        for (const Peer* const peer : Peers) {
            VerifyPeer(Data::Of(count), *peer);
        }
    }
}

} // namespace

} // namespace pmx::bench

int main(int argumentCount, char** arguments) {
    pmx::bench::KeepHeap();
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 1;
    }
    pmx::bench::VerifySameResults();
    pmx::bench::RegisterAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
