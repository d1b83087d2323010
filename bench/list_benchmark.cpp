#include "contestant.h"
#include "whole_file.h"

#include "PMXTemplUI.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>

// Usage: list_benchmark SECONDS COUNT...
// Loads and saves lists of these sizes with every contestant, each for that many seconds, and does with the
// loaded list what a host does. Prints operation, contestant, count, and the shortest and the middle time in
// microseconds.

namespace pmx::bench {

std::vector<Contestant>& Contestants() {
    static std::vector<Contestant> all;
    return all;
}

namespace {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

struct Measurement {
    std::string Name; ///< operation, contestant and count
    std::function<Microseconds()> RunOnce;
    std::vector<Microseconds> Times{};
    Clock::duration Spent{}; ///< with what is not measured
};

using Measurements = std::vector<Measurement>;

/// How long `work` alone takes.
template <typename Work>
Microseconds TimeOf(Work work) {
    const Clock::time_point begin = Clock::now();
    work();
    return Clock::now() - begin;
}

/// A contestant with a folder of its own, whose list file it has written itself if it can.
class Candidate {
public:
    Candidate(const Contestant& contestant, std::size_t count) : Program(contestant), Count(count) {
        AddFavorites(count, List);
        if (Saves()) {
            Open(Folder.GetPlace(), List);
            Program.Save(Folder.GetPlace(), List);
        } else {
            WriteFavorites(count, Folder.GetPlace());
        }
    }

    bool Loads() const { return Count <= Program.MostLoaded; }
    bool Saves() const { return Program.Save != nullptr && Count <= Program.MostSaved; }

    /// Comparing is fair only between programs that do the same.
    void CheckLoading() const {
        SystemList loaded;
        Program.Load(Folder.GetPlace(), loaded);
        Require(AreEqual(loaded, List), std::string(Program.Name) + " does not load what was saved");
    }

    Microseconds Load() const {
        Touch(Folder.GetPlace().Path);
        SystemList loaded;
        return TimeOf([&] { Program.Load(Folder.GetPlace(), loaded); });
    }

    Microseconds Save() {
        return TimeOf([&] { Program.Save(Folder.GetPlace(), List); });
    }

private:
    FavoritesFolder Folder;
    const Contestant& Program;
    std::size_t Count;
    SystemList List;
};

/// A list that a host has opened, and the same for its dialogs.
class OpenList {
public:
    explicit OpenList(std::size_t count) {
        WriteFavorites(count, Folder.GetPlace());
        Open(Folder.GetPlace(), List);
        AddFavorites(count, List);
        Handle = EX_CreateTemplList(Folder.GetPlace().Folder.c_str(), nullptr, nullptr);
        Buffer.resize(static_cast<std::size_t>(EX_GetTemplListSize(Handle, PMX_LEVEL_DOCUMENT)));
    }
    ~OpenList() { EX_DestroyTemplList(Handle); }
    OpenList(const OpenList&) = delete;
    OpenList& operator=(const OpenList&) = delete;

    Microseconds CopyOut() {
        return TimeOf([this] {
            std::int64_t count = 0;
            EX_GetAllTemplInfo(Handle, PMX_LEVEL_DOCUMENT, Buffer.data(),
                               static_cast<std::int64_t>(Buffer.size()), &count);
            Require(count == List.GetSize(), "not all favorites are copied out");
        });
    }

    Microseconds CheckName() const {
        return TimeOf(
            [this] { Require(List.CheckName("no favorite's name") == NameUse::Unused, "the name is used"); });
    }

private:
    FavoritesFolder Folder;
    SystemList List;
    void* Handle = nullptr;
    std::vector<char> Buffer;
};

void AddContestants(std::size_t count, Measurements& measurements) {
    for (const Contestant& contestant : Contestants()) {
        const auto candidate = std::make_shared<Candidate>(contestant, count);
        const std::string name = contestant.Name + (' ' + std::to_string(count));
        if (candidate->Loads()) {
            candidate->CheckLoading();
            measurements.push_back({"load " + name, [candidate] { return candidate->Load(); }});
        }
        if (candidate->Saves()) {
            measurements.push_back({"save " + name, [candidate] { return candidate->Save(); }});
        }
    }
}

void AddUses(std::size_t count, Measurements& measurements) {
    const auto list = std::make_shared<OpenList>(count);
    const std::string name = "store " + std::to_string(count);
    measurements.push_back({"copy-out " + name, [list] { return list->CopyOut(); }});
    measurements.push_back({"check-name " + name, [list] { return list->CheckName(); }});
}

/// Runs each for so long, in turns, so that what disturbs the machine for a while meets all of them.
void Run(Measurements& measurements, Clock::duration duration) {
    constexpr auto turn = std::chrono::milliseconds(20);
    const auto isDone = [&](const Measurement& measurement) { return measurement.Spent >= duration; };
    while (!std::all_of(measurements.begin(), measurements.end(), isDone)) {
        for (Measurement& measurement : measurements) {
            const Clock::time_point begin = Clock::now();
            while (!isDone(measurement) && Clock::now() - begin < turn) {
                measurement.Times.push_back(measurement.RunOnce());
            }
            measurement.Spent += Clock::now() - begin;
        }
    }
}

void Print(Measurement& measurement) {
    std::vector<Microseconds>& times = measurement.Times;
    std::sort(times.begin(), times.end());
    std::cout << measurement.Name << ' ' << times.front().count() << ' ' << times[times.size() / 2].count()
              << '\n';
}

void Measure(std::size_t count, std::chrono::duration<double> duration) {
    Measurements measurements;
    AddContestants(count, measurements);
    AddUses(count, measurements);
    Run(measurements, std::chrono::duration_cast<Clock::duration>(duration));
    std::for_each(measurements.begin(), measurements.end(), Print);
}

} // namespace

} // namespace pmx::bench

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    pmx::bench::Require(words.size() >= 2, "usage: list_benchmark SECONDS COUNT...");
    const std::chrono::duration<double> duration(std::stod(words[0]));
    std::for_each(words.begin() + 1, words.end(),
                  [&](const std::string& word) { pmx::bench::Measure(std::stoul(word), duration); });
    return 0;
}
