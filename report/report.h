// What a running host looks like to the plug-in, written beside the settings file. docs/report.md
// describes every line.
#pragma once

namespace report {

// Writes the report and says in the listener where it is, or that it could not be written. With
// `input` what the hooks see of the next ten seconds is added to it, and told likewise.
void Make(bool input);

// What a script of the report's own hands back.
void Tell(bool answer);

}  // namespace report
