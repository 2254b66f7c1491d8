#include "standin/player/command_line.h"

#include <fcntl.h>
#include <io.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/read_file.h"
#include "standin/player/player.h"
#include "standin/player/plays.h"
#include "standin/player/tour.h"

namespace {

constexpr const char* kUsage =
    "standin play [--input virtual|real] [--abi gnu|msvc] [--release N] [--screen WxH]\n"
    "             [--queries] [--facts] [--forgiving] [--strict] [--trace FILE] [--shots DIR]\n"
    "             [--jobs N] [--host-dir DIR] [--plugin FILE] [--map FILE] [--config-dir DIR]\n"
    "             [--diagnostics] [--world REPORT] [--files-from LIST] FILE.scn...\n"
    "standin interactive [--abi gnu|msvc] [--release N] [--queries] [--facts] [--config-dir DIR]\n"
    "             [--trace FILE] [--watch]\n"
    "standin faults\n"
    "standin tour --out DIR [--scenarios DIR] [options as above]\n";

struct Arguments {
    player::Options options;
    std::string abi = "msvc";
    std::string trace;
    std::string out;
    std::string tour_scenarios;
    report::Report report;
    bool tells_release = false;
    bool tells_screen = false;
    int jobs = 2;
    bool strict = false;
    bool diagnostics = false;
    std::vector<std::string> files;
};

int Usage(const std::string& message) {
    std::fprintf(stderr, "standin: %s\n%s", message.c_str(), kUsage);
    return player::kUnreadable;
}

std::string ProgramFolder() {
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    const std::string path = program;
    return path.substr(0, path.find_last_of("\\/"));
}

bool ReadScreen(const char* text, player::Options* options) {
    char extra = 0;
    return std::sscanf(text, "%dx%d%c", &options->screen_width, &options->screen_height, &extra) ==
               2 &&
           options->screen_width >= 320 && options->screen_height >= 200;
}

// A command line of Windows holds 32767 characters, which are not enough for the names of a few
// hundred scenarios: a list has one name a line.
bool ReadList(const char* name, std::vector<std::string>* files) {
    std::FILE* const file = std::fopen(name, "r");
    if (!file) return false;
    char line[2 * MAX_PATH];
    while (std::fgets(line, sizeof line, file)) {
        line[std::strcspn(line, "\r\n")] = 0;
        if (line[0]) files->emplace_back(line);
    }
    std::fclose(file);
    return true;
}

// What is wrong with the arguments; empty: nothing.
std::string Parse(std::vector<std::string> list, Arguments* result) {
    player::Options& options = result->options;
    CLI::App app;
    app.set_help_flag();
    app.allow_windows_style_options(false);  // a path may begin with a slash
    app.add_flag("--queries", options.queries);
    app.add_flag("--facts", options.facts);
    app.add_flag("--forgiving", options.forgiving);
    app.add_flag("--strict", result->strict);
    app.add_flag("--watch", options.watch);
    app.add_flag("--film", options.film);
    app.add_flag("--diagnostics", result->diagnostics);
    const std::map<std::string, input::Kind> kinds = {{"virtual", input::Kind::kVirtual},
                                                      {"real", input::Kind::kReal}};
    app.add_option("--input", options.input)->transform(CLI::CheckedTransformer(kinds));
    app.add_option("--abi", result->abi)->check(CLI::IsMember({"gnu", "msvc"}));
    constexpr int kHighest = 65535;
    app.add_option("--release", options.release)->check(CLI::Range(1, kHighest));
    app.add_option("--jobs", result->jobs)->check(CLI::Range(1, kHighest));
    app.add_option_function<std::string>("--screen", [&options](const std::string& text) {
        if (!ReadScreen(text.c_str(), &options))
            throw CLI::ValidationError("--screen", "no size of a screen");
    });
    app.add_option_function<std::string>("--files-from", [result](const std::string& name) {
        if (!ReadList(name.c_str(), &result->files))
            throw CLI::ValidationError("--files-from", "can not be read");
    });
    app.add_option("--trace", result->trace);
    app.add_option("--shots", options.shots);
    app.add_option("--desktop", options.desktop);
    app.add_option("--transcript", options.transcript);
    app.add_option("--out", result->out);
    app.add_option("--scenarios", result->tour_scenarios);
    app.add_option("--host-dir", options.files.host_dir);
    app.add_option("--plugin", options.files.plugin);
    app.add_option("--map", options.files.map);
    app.add_option("--companion", options.files.companion);
    app.add_option("--config-dir", options.config_dir);
    app.add_option("--world", options.world);
    std::vector<std::string> files;
    app.add_option("files", files);
    std::reverse(list.begin(), list.end());  // as CLI11 wants it
    try {
        app.parse(list);
    } catch (const CLI::ExtrasError&) {
        return "unknown option " + app.remaining().front();
    } catch (const CLI::ParseError& error) {
        const std::string message = error.what();
        const std::string name = message.substr(0, message.find(':'));
        const std::vector<std::string> values = app.get_option(name)->results();
        if (values.empty()) return "missing a value after " + name;
        return "\"" + values.back() + "\" is no value for " + name;
    }
    result->files.insert(result->files.end(), files.begin(), files.end());
    result->tells_release = app.count("--release") > 0;
    result->tells_screen = app.count("--screen") > 0;
    return {};
}

// Reads the arguments from the one with the number `first` on. Empty when they are sound, else what
// is wrong.
std::string ReadArguments(int count, char** arguments, int first, Arguments* result) {
    std::string problem = Parse({arguments + first, arguments + count}, result);
    if (!problem.empty()) return problem;
    player::Options& options = result->options;
    // Beside the program lie the folders of both builds.
    const std::string build = ProgramFolder() + "\\..\\..\\" + result->abi;
    plugin::Files& files = options.files;
    if (files.host_dir.empty()) files.host_dir = build + "\\host";
    if (files.plugin.empty()) files.plugin = build + "\\plugin\\KarvelMax.gup";
    if (files.map.empty()) {
        const size_t dot = files.plugin.find_last_of('.');
        files.map = files.plugin.substr(0, dot) + ".map";
        // An installed plug-in has none; only what looks into it needs the map.
        if (_access(files.map.c_str(), 0) != 0) files.map.clear();
    }
    if (result->diagnostics && files.companion.empty())
        files.companion = files.plugin.substr(0, files.plugin.find_last_of("\\/") + 1) +
                          "..\\diagnostics\\KarvelReport.gup";
    for (std::string* path : {&files.host_dir, &files.plugin, &files.map, &files.companion}) {
        if (path->empty()) continue;
        char full[MAX_PATH] = "";
        if (GetFullPathNameA(path->c_str(), sizeof full, full, nullptr)) *path = full;
    }
    return {};
}

// Reads the report whose windows the host has; complains where it is not sound. What the options
// do not say is as it was there.
bool ReadReport(Arguments* arguments) {
    player::Options& options = arguments->options;
    if (options.world.empty()) return true;
    const std::optional<std::string> text = files::Read(options.world);
    if (!text) {
        std::fprintf(stderr, "%s: the report is missing, check its name\n", options.world.c_str());
        return false;
    }
    report::Mistake mistake;
    report::Report& report = arguments->report;
    if (!report::Read(*text, &report, &mistake)) {
        std::fprintf(stderr, "%s:%d: %s\n", options.world.c_str(), mistake.line,
                     mistake.message.c_str());
        return false;
    }
    options.report = &report;
    if (!arguments->tells_release) options.release = report.release;
    if (!arguments->tells_screen) {
        options.screen_width = report.screen_at.x + report.screen_size.x;
        options.screen_height = report.screen_at.y + report.screen_size.y;
    }
    return true;
}

// Reads a scenario; complains where it is not sound.
bool ReadScenario(const Arguments& arguments, const std::string& file, scenario::Scenario* result) {
    const std::optional<std::string> text = files::Read(file);
    if (!text) {
        std::fprintf(stderr, "%s: the file is missing, check its name\n", file.c_str());
        return false;
    }
    scenario::Mistake mistake;
    if (scenario::Parse(*text, player::KnownWords(arguments.options.report), result, &mistake))
        return true;
    std::fprintf(stderr, "%s:%d: %s\n", file.c_str(), mistake.line, mistake.message.c_str());
    return false;
}

// Whether the play of a scenario can show a fault; says what is missing. Who leaves out what can
// not be done is after the trace alone.
bool HasAll(const Arguments& arguments, const std::string& file,
            const scenario::Scenario& scenario) {
    const std::string missing = arguments.options.forgiving ? "" : scenario::MissingIn(scenario);
    if (!missing.empty()) std::fprintf(stderr, "%s: %s\n", file.c_str(), missing.c_str());
    return missing.empty();
}

bool WriteAll(HANDLE file, const std::string& text) {
    size_t at = 0;
    while (at < text.size()) {
        DWORD written = 0;
        if (!WriteFile(file, text.data() + at, static_cast<DWORD>(text.size() - at), &written,
                       nullptr) ||
            written == 0)
            return false;
        at += written;
    }
    return true;
}

// What can be checked before anything is played.
bool CheckFiles(const Arguments& arguments) {
    std::string message;
    const plugin::Files& files = arguments.options.files;
    if (plugin::CheckFile(files.plugin, &message) &&
        (files.companion.empty() || plugin::CheckFile(files.companion, &message)) &&
        plugin::LoadMap(files.map, &message))
        return true;
    std::fprintf(stderr, "standin: %s\n", message.c_str());
    return false;
}

bool OpenTrace(const std::string& name, HANDLE* file) {
    *file = CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0,
                        nullptr);
    if (*file != INVALID_HANDLE_VALUE) return true;
    std::fprintf(stderr, "standin: the trace file %s can not be written\n", name.c_str());
    return false;
}

int PlayAll(const Arguments& arguments) {
    std::vector<scenario::Scenario> scenarios(arguments.files.size());
    bool sound = CheckFiles(arguments);
    for (size_t i = 0; i < arguments.files.size(); ++i)
        if (sound || !arguments.files.empty())
            sound = ReadScenario(arguments, arguments.files[i], &scenarios[i]) &&
                    (HasAll(arguments, arguments.files[i], scenarios[i]) || !arguments.strict) &&
                    sound;
    if (!sound) return player::kUnreadable;

    HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if (!arguments.trace.empty() && !OpenTrace(arguments.trace, &output))
        return player::kUnreadable;

    int status = player::kGood;
    const bool several = arguments.files.size() > 1;
    std::string message;
    plays::Team team(static_cast<size_t>(arguments.jobs));
    const bool begun = team.Run(
        arguments.options, arguments.files.size(),
        [&](size_t i) {
            return plays::Play{arguments.files[i], scenarios[i].screen_width,
                               scenarios[i].screen_height};
        },
        [&](size_t i, const child::Result& result) {
            status = std::max(status, result.status);
            std::fwrite(result.messages.data(), 1, result.messages.size(), stderr);
            std::fflush(stderr);
            if (WriteAll(output, several ? "# " + arguments.files[i] + "\n" + result.output
                                         : result.output))
                return true;
            std::fprintf(stderr, "standin: the trace can not be written\n");
            status = player::kUnreadable;
            return false;
        },
        &message);
    if (!arguments.trace.empty()) CloseHandle(output);
    if (begun) return status;
    std::fprintf(stderr, "standin: %s\n", message.c_str());
    return player::kDied;
}

// What a worker's thread does: one play from its beginning to its end.
int PlayOne(const Arguments& arguments) {
    std::string message;
    scenario::Scenario read;
    if (!plugin::LoadMap(arguments.options.files.map, &message)) {
        std::fprintf(stderr, "standin: %s\n", message.c_str());
        return player::kUnreadable;
    }
    if (!ReadScenario(arguments, arguments.files[0], &read)) return player::kUnreadable;
    const int status = player::Play(arguments.options, arguments.files[0], read);
    // A coverage build of the plug-in offers to write its counts, which it does by itself only when
    // a process ends in an orderly way.
    if (const HMODULE module = GetModuleHandleA("KarvelMax.gup")) {
        void* const write = reinterpret_cast<void*>(GetProcAddress(module, "KarvelWriteCoverage"));
        if (write) reinterpret_cast<void (*)(const char*)>(write)(arguments.files[0].c_str());
    }
    return status;
}

DWORD WINAPI PlayOneInThread(void* arguments) {
    const int status = PlayOne(*static_cast<const Arguments*>(arguments));
    std::fflush(stderr);
    return static_cast<DWORD>(status);
}

int ListFaults() {
    for (const std::string& name : faults::Names())
        std::printf("%s\n", name.c_str());
    return player::kGood;
}

int PlayTour(Arguments arguments) {
    arguments.options.input = input::Kind::kReal;
    arguments.options.shots = arguments.out;
    if (arguments.tour_scenarios.empty())
        arguments.tour_scenarios = ProgramFolder() + "\\..\\..\\..\\standin\\player\\tour";
    const std::vector<std::string> files = tour::Files(arguments.tour_scenarios);
    if (files.empty()) {
        std::fprintf(stderr, "standin: %s holds no scenario, give the tour's with --scenarios\n",
                     arguments.tour_scenarios.c_str());
        return player::kUnreadable;
    }
    bool sound = CheckFiles(arguments);
    std::vector<tour::Stop> stops;
    for (const std::string& file : files) {
        scenario::Scenario read;
        sound = ReadScenario(arguments, file, &read) && sound;
        stops.push_back({file, read.caption});
    }
    if (!sound) return player::kUnreadable;
    CreateDirectoryA(arguments.out.c_str(), nullptr);
    plays::Team team(1);
    return tour::Play(stops, arguments.out,
                      [&arguments, &team](const tour::Stop& stop, const std::string& transcript,
                                          std::string* output, std::string* messages) {
                          arguments.options.transcript = transcript;
                          arguments.options.film = tour::IsFilmed(stop);
                          const child::Result result =
                              team.RunOne(arguments.options, {stop.file, 0, 0});
                          *output = result.output;
                          *messages = result.messages;
                          return result.status;
                      });
}

void SetBinaryOutput() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

}  // namespace

int standin_main(int count, char** arguments) {
    return player::Main(count, arguments);
}

worker::Outcome standin_play(int count, char** arguments, HANDLE ready) {
    return player::PlayInWorker(count, arguments, ready, nullptr);
}

bool standin_clear() {
    return player::Clear();
}

namespace player {

worker::Outcome PlayInWorker(int count, char** arguments, HANDLE ready, Observer* observer) {
    SetBinaryOutput();
    Arguments read;
    if (const std::string problem = ReadArguments(count, arguments, 0, &read); !problem.empty())
        return {Usage(problem), true};
    if (!ReadReport(&read)) return {kUnreadable, true};
    read.options.ready = ready;
    read.options.observer = observer;
    // Windows, hooks, timers, focus and keys belong to a thread and end with it.
    const HANDLE thread = CreateThread(nullptr, 0, PlayOneInThread, &read, 0, nullptr);
    DWORD status = kDied;
    WaitForSingleObject(thread, INFINITE);
    GetExitCodeThread(thread, &status);
    CloseHandle(thread);
    return {static_cast<int>(status), input::TidyDesktop()};
}

int Main(int count, char** arguments) {
    SetBinaryOutput();
    if (count < 2) return Usage("missing a command");
    const std::string command = arguments[1];
    Arguments read;
    if (const std::string problem = ReadArguments(count, arguments, 2, &read); !problem.empty())
        return Usage(problem);
    if (command == "play") {
        if (read.files.empty()) return Usage("missing a scenario's file");
        return ReadReport(&read) ? PlayAll(read) : kUnreadable;
    }
    if (command == "tour") {
        if (read.out.empty()) return Usage("missing --out and a folder for the pictures");
        return PlayTour(read);
    }
    if (command == "faults") return ListFaults();
    if (command == "interactive") {
        if (!CheckFiles(read)) return kUnreadable;
        // "-" is the terminal.
        if (!read.trace.empty() && read.trace != "-" && !OpenTrace(read.trace, &read.options.trace))
            return kUnreadable;
        return RunInteractive(read.options);
    }
    return Usage("unknown command " + command);
}

int WithPlays(int count, char** arguments,
              const std::function<int(input::Kind input, const PlayTexts& play)>& run) {
    SetBinaryOutput();
    Arguments read;
    std::string problem = ReadArguments(count, arguments, 1, &read);
    if (problem.empty() && !read.files.empty())
        problem = "\"" + read.files[0] + "\" is too much, the scenarios are made here";
    if (!problem.empty()) {
        std::fprintf(stderr, "standin: %s\n", problem.c_str());
        return kUnreadable;
    }
    if (!CheckFiles(read)) return kUnreadable;
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string stem =
        std::string(folder) + "walk-" + std::to_string(GetCurrentProcessId()) + "-";
    plays::Team team(static_cast<size_t>(read.jobs));
    return run(read.options.input, [&](const std::vector<std::string>& texts) {
        std::vector<Played> played(texts.size());
        const auto name = [&stem](size_t i) { return stem + std::to_string(i) + ".scn"; };
        std::string message;
        const bool begun = team.Run(
            read.options, texts.size(),
            [&](size_t i) {
                if (std::FILE* const file = std::fopen(name(i).c_str(), "wb")) {
                    std::fwrite(texts[i].data(), 1, texts[i].size(), file);
                    std::fclose(file);
                }
                return plays::Play{name(i), 0, 0};
            },
            [&](size_t i, const child::Result& result) {
                played[i] = {result.status, result.messages, result.output};
                DeleteFileA(name(i).c_str());
                return true;
            },
            &message);
        if (!begun) {
            std::fprintf(stderr, "standin: %s\n", message.c_str());
            ExitProcess(kDied);
        }
        return played;
    });
}

}  // namespace player
