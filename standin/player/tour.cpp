#include "standin/player/tour.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "standin/player/transcript.h"

namespace tour {
namespace {

// The pictures of a stop, without the rest of the transcript.
std::vector<std::string> Pictures(const transcript::Page& page) {
    std::vector<std::string> names;
    for (const auto& [kind, text] : page.lines)
        if (kind == 's') names.push_back(text);
    return names;
}

void Say(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace

std::vector<std::string> Files(const std::string& folder) {
    std::vector<std::string> files;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((folder + "\\*.scn").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return files;
    do {
        files.push_back(folder + "\\" + found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    std::sort(files.begin(), files.end());
    return files;
}

bool IsFilmed(const Stop& stop) {
    return stop.file.find("orbit_zoom_orbit") != std::string::npos;
}

int Play(const std::vector<Stop>& stops, const std::string& folder, const PlayStop& play) {
    const std::string trace_name = folder + "\\tour.trace";
    std::FILE* const trace = std::fopen(trace_name.c_str(), "wb");
    if (!trace) {
        std::fprintf(stderr, "standin: %s can not be written, give another folder with --out\n",
                     trace_name.c_str());
        return 2;
    }
    constexpr size_t kLeft = 48;
    const std::string heads = "  what the user does";
    Say(heads + std::string(kLeft - heads.size(), ' ') + "| what the plug-in does\n");

    transcript::Page all;
    size_t pictures = 0;
    int status = 0;
    int number = 0;
    for (const Stop& stop : stops) {
        ++number;
        const std::string transcript_name = folder + "\\transcript.tmp";
        std::string output;
        std::string messages;
        const int ended = play(stop, transcript_name, &output, &messages);
        status = std::max(status, ended);
        transcript::Page page;
        const bool read = transcript::Read(transcript_name, &page);
        DeleteFileA(transcript_name.c_str());
        Say("\n" + std::to_string(number) + ". " + stop.caption + "\n");
        if (read) Say(transcript::Print(page));
        if (!messages.empty()) {
            std::fwrite(messages.data(), 1, messages.size(), stderr);
            std::fflush(stderr);
        }
        std::fprintf(trace, "# %s\n", stop.caption.c_str());
        std::fwrite(output.data(), 1, output.size(), trace);
        all.injected += page.injected;
        all.own += page.own;
        all.swallowed += page.swallowed;
        all.passed += page.passed;
        pictures += Pictures(page).size();
    }
    std::fclose(trace);
    Say("\nThe trace is in tour.trace, " + std::to_string(pictures) + " pictures lie beside it.\n" +
        std::to_string(all.injected) + " events were injected through the system's input queue, " +
        std::to_string(all.own) + " more by the plug-in; of the " +
        std::to_string(all.swallowed + all.passed) + " that reached its hooks it swallowed " +
        std::to_string(all.swallowed) + ".\n");
    return status;
}

}  // namespace tour
