#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace pmx::test {

/// Counts the calls of a service's operations and says which of them are to fail, and how.
template <typename Operation, typename Failure>
class FailurePlan {
public:
    /// The `number`-th call (from 1) of `operation` is to fail.
    void FailAt(Operation operation, std::size_t number, Failure failure) {
        Rules.push_back({operation, number, number, failure});
    }

    /// The `number`-th call (from 1) of `operation` and all later ones are to fail.
    void FailFrom(Operation operation, std::size_t number, Failure failure) {
        Rules.push_back({operation, number, static_cast<std::size_t>(-1), failure});
    }

    /// The `number`-th call (from 1) of all operations together is to fail.
    void FailAtAny(std::size_t number, Failure failure) {
        Rules.push_back({std::nullopt, number, number, failure});
    }

    /// The `number`-th call (from 1) of all operations together and all later ones are to fail.
    void FailFromAny(std::size_t number, Failure failure) {
        Rules.push_back({std::nullopt, number, static_cast<std::size_t>(-1), failure});
    }

    /// No further call is to fail; the counts stay.
    void Heal() { Rules.clear(); }

    /// How often `operation` was called, failed calls included.
    std::size_t Calls(Operation operation) const {
        const auto found = Counts.find(operation);
        return found == Counts.end() ? 0 : found->second;
    }

    /// How often any operation was called.
    std::size_t Calls() const { return Total; }

    /// Runs at every call before anything else is done; may be empty, and may end the process.
    std::function<void()> OnCall;

    /// Counts a call; the failure that it is to have, if any.
    std::optional<Failure> Next(Operation operation) {
        if (OnCall) {
            OnCall();
        }
        const std::size_t ofOperation = ++Counts[operation];
        ++Total;
        for (const Rule& rule : Rules) {
            if (rule.Wanted && *rule.Wanted != operation) {
                continue;
            }
            const std::size_t number = rule.Wanted ? ofOperation : Total;
            if (number >= rule.First && number <= rule.Last) {
                return rule.Outcome;
            }
        }
        return std::nullopt;
    }

private:
    struct Rule {
        std::optional<Operation> Wanted; ///< none: any operation
        std::size_t First;
        std::size_t Last;
        Failure Outcome;
    };

    std::vector<Rule> Rules;
    std::map<Operation, std::size_t> Counts;
    std::size_t Total = 0;
};

} // namespace pmx::test
