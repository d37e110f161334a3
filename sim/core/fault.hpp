// Fault injection: rules that make chosen library calls fail with a chosen
// result, read once from KVD_SIM_FAULT.
//
//   Name[@board]=result[:once|:N][,...]
//
// A rule without @board matches the call on every board and the calls that
// take no board. A matching call returns the rule's result without doing its
// work. `once` fires for the first matching call only, `:N` for the first N;
// otherwise the rule fires every time. The first live rule that matches wins.
//
// Matching takes no lock and allocates nothing: the release calls consult the
// rules from inside a signal handler.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace kvdsim
{

class FaultRules
{
  public:
    static constexpr int kMaxRules = 32;
    static constexpr int kNameMax = 48;
    static constexpr int64_t kAlways = -1;
    static constexpr int32_t kNoBoard = -1;

    constexpr FaultRules() = default;
    FaultRules(const FaultRules &) = delete;
    FaultRules &operator=(const FaultRules &) = delete;

    // Replaces the rules with those in `text`. Each malformed rule is left
    // out and reported by one line appended to `errors` (newline-terminated).
    void parse(const char *text, std::string &errors);

    struct Hit {
        int64_t result;
        int rule; // 1-based position in the text
    };

    // The result to return instead of doing the call, if a rule fires.
    // `board` is kNoBoard for calls that take no board.
    std::optional<Hit> match(const char *name, int32_t board);

    // The status an engine completes its command `code` (row name `name`)
    // with, if a rule "engine:NAME" or "engine:CODE" fires.
    std::optional<Hit> match_command(const char *engine, uint32_t code, const char *name, int32_t board);

    int count() const
    {
        return count_.load(std::memory_order_acquire);
    }

  private:
    struct Rule {
        char name[kNameMax] = {};
        int32_t board = kNoBoard;
        int64_t result = 0;
        int position = 0;
        std::atomic<int64_t> remaining{kAlways};
    };
    std::optional<Hit> fire(Rule &r, int32_t board);

    Rule rules_[kMaxRules];
    std::atomic<int> count_{0};
};

// The library's own rules, read from the environment when it is loaded.
FaultRules &library_faults();
void load_faults_from_env();

} // namespace kvdsim
