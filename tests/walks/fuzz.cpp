#include "tests/walks/fuzz.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "tests/walks/exemptions.h"
#include "tests/walks/hook_model.h"
#include "tests/walks/walk.h"

namespace fuzz {
namespace {

using Lines = std::vector<std::string>;
using player::Played;
using player::PlayTexts;

constexpr int kReleases[] = {13900, 12900, 6000, 13900, 11900, 7000, 14000};

void Say(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

// The complaint without the place, the window and the numbers, to tell whether a shorter walk fails
// in the same way.
std::string Complaint(const Played& verdict) {
    const size_t line = verdict.messages.find(".scn:");
    const size_t colon = verdict.messages.find(": ", line == std::string::npos ? 0 : line);
    std::string text =
        colon == std::string::npos ? verdict.messages : verdict.messages.substr(colon + 2);
    if (const size_t in = text.find(" in "); in != std::string::npos)
        text.erase(in, text.find(' ', in + 4) - in);
    std::erase_if(text, [](char c) { return (c >= '0' && c <= '9') || c == '-'; });
    return text;
}

bool Fails(const Played& verdict) {
    return verdict.status == 1 || verdict.status == 3;
}

// What all walks together visited and exempted.
struct Totals {
    std::array<unsigned long long, hook_model::kPlaces> visits{};
    std::array<unsigned long long, exemptions::kExemptions> arisen{};
    std::array<unsigned long long, exemptions::kExemptions * exemptions::kChecks> used{};

    void Add(const std::string& report) {
        std::istringstream lines(report);
        char kind = 0;
        size_t index = 0;
        unsigned long long count = 0;
        while (lines >> kind >> index >> count) {
            if (kind == 'v' && index < visits.size()) visits[index] += count;
            if (kind == 'a' && index < arisen.size()) arisen[index] += count;
            if (kind == 'u' && index < used.size()) used[index] += count;
        }
    }
};

std::string Row(unsigned long long count, const std::string& text) {
    const std::string number = std::to_string(count);
    constexpr size_t kWidth = 10;
    return std::string(number.size() < kWidth ? kWidth - number.size() : 0, ' ') + number + "  " +
           text + "\n";
}

// True: every place that a walk can get to has been visited.
bool Print(const Totals& totals) {
    std::string text = "\nvisits of each row and step\n";
    std::string missing;
    for (size_t i = 0; i < totals.visits.size(); ++i) {
        const auto place = static_cast<hook_model::Place>(i);
        const std::string name(hook_model::NameOf(place));
        if (totals.visits[i] == 0) missing += "  " + name + "\n";
        text += Row(totals.visits[i], name);
    }
    text += "\nexemptions: how often each situation arose, and how often a check needed it\n";
    for (size_t i = 0; i < totals.arisen.size(); ++i) {
        const std::string_view name = exemptions::NameOf(static_cast<exemptions::Exemption>(i));
        std::string needed;
        for (size_t check = 0; check < exemptions::kChecks; ++check)
            if (const auto used = totals.used[i * exemptions::kChecks + check])
                needed += (needed.empty() ? ": " : ", ") +
                          std::string(exemptions::NameOf(static_cast<exemptions::Check>(check))) +
                          " " + std::to_string(used);
        text += Row(totals.arisen[i], std::string(name) + needed);
    }
    Say(text);
    if (missing.empty()) return true;
    Say("\nnever visited, though a walk can get there:\n" + missing);
    return false;
}

// Where a play stopped: `...scn:LINE: what`; 0: at no line.
size_t LineOf(const Played& verdict) {
    const size_t place = verdict.messages.find(".scn:");
    if (place == std::string::npos) return 0;
    return std::strtoul(verdict.messages.c_str() + place + 5, nullptr, 10);
}

class Shrinker {
public:
    Shrinker(const Lines& lines, const Played& verdict, const PlayTexts& play)
        : lines_(lines), complaint_(Complaint(verdict)), play_(play) {
        if (const size_t line = LineOf(verdict); line > 0 && line < lines_.size())
            Try(Lines(lines_.begin(), lines_.begin() + static_cast<std::ptrdiff_t>(line)));
        // Mostly what came before the last rest has nothing to do with it.
        size_t rest = lines_.size();
        for (size_t i = walk::HeadOf(lines_); i + 2 < lines_.size(); ++i)
            if (walk::IsRest(lines_[i])) rest = i;
        if (rest < lines_.size()) Try(Without(walk::HeadOf(lines_), rest + 1));
    }

    // Leaves parts out, large ones first, as long as the walk goes on failing in the same way.
    Lines Go() {
        const size_t head = walk::HeadOf(lines_);
        for (size_t part = lines_.size() / 2; part >= 1; part /= 2) {
            bool shrunk = true;
            while (shrunk && plays_ < kMostPlays) {
                shrunk = false;
                for (size_t at = head; at < lines_.size() && plays_ < kMostPlays;) {
                    if (Try(Without(at, std::min(lines_.size(), at + part))))
                        shrunk = true;
                    else
                        at += part;
                }
            }
        }
        // The settings before the start.
        for (size_t at = 1; at + 1 < walk::HeadOf(lines_) && plays_ < kMostPlays;)
            if (!Try(Without(at, at + 1))) ++at;
        return lines_;
    }

private:
    static constexpr int kMostPlays = 600;

    Lines Without(size_t from, size_t to) const {
        Lines shorter(lines_.begin(), lines_.begin() + static_cast<std::ptrdiff_t>(from));
        shorter.insert(shorter.end(), lines_.begin() + static_cast<std::ptrdiff_t>(to),
                       lines_.end());
        return shorter;
    }

    bool Try(const Lines& lines) {
        const Lines shorter = walk::Repair(lines);
        if (shorter.size() >= lines_.size()) return false;
        ++plays_;
        const Played verdict = play_({walk::Text(shorter)})[0];
        if (!Fails(verdict) || Complaint(verdict) != complaint_) return false;
        lines_ = shorter;
        return true;
    }

    Lines lines_;
    std::string complaint_;
    const PlayTexts& play_;
    int plays_ = 0;
};

}  // namespace

int Run(const Options& options, const PlayTexts& play) {
    Say("seed " + std::to_string(options.seed) + ", " + std::to_string(options.events) +
        " events\n");
    unsigned long long walked = 0;
    unsigned long long told = 0;
    Totals totals;
    for (uint64_t number = 0; walked < options.events;) {
        constexpr int kTogether = 8;
        std::vector<Lines> walks;
        std::vector<std::string> texts;
        for (int i = 0; i < kTogether && walked < options.events; ++i, ++number) {
            walk::Kind kind;
            if (number % 3 == 2) kind.faults = options.faults;
            kind.destroys = number % 5 == 4;
            kind.release = kReleases[number % std::size(kReleases)];
            kind.real = options.real;
            // Real input has the one screen that the system has.
            if (!options.real && number % 4 == 1) kind.left = -1280;
            if (!options.real && number % 4 == 3) kind.top = -300;
            walks.push_back(
                walk::Make(options.seed * 1000003 + number, options.commands_of_a_walk, kind));
            texts.push_back(walk::Text(walks.back()));
            walked += walk::EventsIn(walks.back());
        }
        const std::vector<Played> verdicts = play(texts);
        constexpr unsigned long long kTold = 100000;
        if (walked / kTold != told / kTold) Say(std::to_string(walked) + " events so far\n");
        told = walked;
        for (size_t i = 0; i < verdicts.size(); ++i) {
            totals.Add(verdicts[i].output);
            if (verdicts[i].status == 0) continue;
            Say("walk " + std::to_string(number - walks.size() + i) +
                " fails: " + verdicts[i].messages);
            if (!Fails(verdicts[i])) return verdicts[i].status;
            const Lines shortest = Shrinker(walks[i], verdicts[i], play).Go();
            Say("the shortest scenario that shows it:\n\n" + walk::Text(shortest) + "\n");
            Say("What is right is said by hook_model.cpp, chords.cpp and invariants.cpp of "
                "tests/walks: what "
                "the plug-in is meant to do in another way from now on changes there too.\n");
            return 1;
        }
    }
    const bool all = Print(totals);
    Say(std::to_string(walked) + " events walked, everything held\n");
    return options.every_row && !all ? 1 : 0;
}

}  // namespace fuzz
